#pragma once

#include "app/flows/MainTimers.h"
#include "app/flows/TaskRunner.h"

#include <memory>
#include <string>

namespace vantro::app::flows {

/// Timers on the main thread's Qt event loop.
class QtMainTimers : public MainTimers {
  public:
    std::unique_ptr<MainTimer> repeat(std::chrono::milliseconds interval,
                                      std::function<void()> tick) override;
};

/// A worker thread of its own that comes back through the main thread's Qt event loop.
///
/// Destruction waits for the work that is queued; what would then have run on the main thread is
/// dropped. Main thread.
class QtTaskRunner : public TaskRunner {
  public:
    /// `label` names the thread.
    explicit QtTaskRunner(std::string label);
    ~QtTaskRunner() override;

    void run(std::function<Continuation()> work) override;
    void onMain(Continuation task) override;

  private:
    struct Members;
    std::unique_ptr<Members> m_members;
};

} // namespace vantro::app::flows
