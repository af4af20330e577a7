#pragma once

#include "base/HostClock.h"

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

} // namespace vantro::capture
