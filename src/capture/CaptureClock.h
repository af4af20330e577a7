#pragma once

#include "base/HostClock.h"

#include <cstdint>
#include <stop_token>

namespace vantro::capture {

/// The host clock as capture code sees it, so that a test can move the time. Any thread.
class CaptureClock {
  public:
    virtual ~CaptureClock() = default;

    virtual base::HostTime now() = 0;
    /// Returns at `deadline`, at once when that has passed, or as soon as a stop is asked for.
    virtual void sleepUntil(base::HostTime deadline, std::stop_token stop) = 0;
};

/// CLOCK_MONOTONIC itself.
CaptureClock& hostCaptureClock();

/// The host time of a display server's time stamp, whose milliseconds are those of the same clock
/// on this machine; `now` where that cannot be, as with a server elsewhere.
base::HostTime hostTimeOf(std::uint32_t milliseconds, base::HostTime now);

} // namespace vantro::capture
