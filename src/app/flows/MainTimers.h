#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace vantro::app::flows {

/// A repeating timer; destroying it stops it.
class MainTimer {
  public:
    virtual ~MainTimer() = default;
};

/// Makes timers that tick on the main thread. Main thread.
class MainTimers {
  public:
    virtual ~MainTimers() = default;

    /// The first tick comes one interval from now.
    virtual std::unique_ptr<MainTimer> repeat(std::chrono::milliseconds interval,
                                              std::function<void()> tick) = 0;
};

} // namespace vantro::app::flows
