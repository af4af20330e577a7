#pragma once

#include "app/flows/MainTimers.h"
#include "app/flows/TaskRunner.h"

#include <functional>
#include <memory>

namespace vantro::app::flows {

/// Whole seconds counted down on the main thread. Main thread.
class Countdown {
  public:
    /// `changed` is told of each new number and leaves the countdown alone, `ended` comes after the
    /// last second. `timers` and `tasks` outlive this.
    Countdown(MainTimers& timers, TaskRunner& tasks, std::function<void()> changed,
              std::function<void()> ended);

    /// `seconds` is at least 1.
    void start(int seconds);
    void cancel();
    /// 0 while nothing is counted.
    int remaining() const { return m_remaining; }

  private:
    void tick();
    void setRemaining(int seconds);

    MainTimers& m_timers;
    TaskRunner& m_tasks;
    const std::function<void()> m_changed;
    const std::function<void()> m_ended;
    int m_remaining = 0;
    std::shared_ptr<MainTimer> m_timer;
};

} // namespace vantro::app::flows
