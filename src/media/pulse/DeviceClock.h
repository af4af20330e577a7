#pragma once

#include "base/HostClock.h"

#include <cstddef>
#include <deque>
#include <optional>

namespace vantro::media::pulse {

/// When a device plays which sample, from what a sound server reports now and then. Never goes
/// backward. Given the time by its callers; not thread-safe.
///
/// PulseAudio's reports are exact. PipeWire counts a cycle of its graph as played when the cycle
/// begins, so its reports run ahead by up to a cycle, and are right where one ends. Of the reports
/// of a second the one that is least ahead is therefore believed.
class DeviceClock {
  public:
    /// Sample `position` of the stream leaves the device at `at`; server's word.
    void observe(base::HostTime at, double position);
    /// What is heard at `now`; nothing before the first observation, and nothing where the device
    /// has not moved for so long that it stands still.
    std::optional<double> position(base::HostTime now);
    /// Forgets all: the device stands.
    void reset();

  private:
    struct Observation {
        base::HostTime at;
        double lead; ///< of the device's position before a host clock that started with it
    };

    std::optional<base::HostTime> m_start;
    std::deque<Observation> m_recent;
    int m_observations = 0;
    double m_lead = 0;   ///< as it is used: smoothed
    double m_latest = 0; ///< position given out
    base::HostTime m_moved;
    double m_observed = 0;
};

} // namespace vantro::media::pulse
