#pragma once

#include <functional>

namespace vantro::app::flows {

/// Runs slow work away from the main thread, one piece after the other.
class TaskRunner {
  public:
    using Continuation = std::function<void()>;

    virtual ~TaskRunner() = default;

    /// Runs `work` on the worker thread and then what it returns on the main thread. `work` throws
    /// nothing. Main thread.
    virtual void run(std::function<Continuation()> work) = 0;
    /// Runs `task` on the main thread, later. Any thread.
    virtual void onMain(Continuation task) = 0;
};

} // namespace vantro::app::flows
