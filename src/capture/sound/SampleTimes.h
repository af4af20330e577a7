#pragma once

#include "base/HostClock.h"

#include <cstdint>
#include <deque>
#include <optional>

namespace vantro::capture::sound {

/// When a device recorded which sample, by what a server says now and then.
///
/// A report can be late for many reasons and is never early, so of the reports of a second the
/// least late is believed. Given the time by its callers. A value, not thread-safe.
class SampleTimes {
  public:
    /// A report of `now` says that sample `position` of the device was recorded at `at`.
    void observe(base::HostTime now, std::int64_t position, base::HostTime at);
    /// Whether there are enough to believe them.
    bool isSettled() const;
    bool isEmpty() const { return m_recent.empty(); }
    /// Once something has been observed.
    base::HostTime timeOf(double position) const;
    /// Another device, or the same one anew.
    void reset() { *this = {}; }

  private:
    struct Observation {
        base::HostTime now;
        double lateness; ///< seconds behind a device that began with the first one
    };

    base::HostTime m_start;
    base::HostTime m_first; ///< when the first one was made
    std::int64_t m_startPosition = 0;
    std::deque<Observation> m_recent;
    double m_least = 0; ///< of the recent ones' lateness
};

} // namespace vantro::capture::sound
