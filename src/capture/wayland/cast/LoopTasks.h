#pragma once

#include "pipewire/Loop.h"

#include <deque>
#include <functional>
#include <future>
#include <mutex>

namespace vantro::capture::wayland {

/// What other threads have the thread of a loop do, one after the other. Callers wait for what they
/// ask, so no more waits here than there are of them.
class LoopTasks {
  public:
    /// The loop that is woken, for as long as this lives. On the loop's thread.
    class Published {
      public:
        Published(LoopTasks& tasks, pipewire::Loop& loop) : m_tasks(tasks) { m_tasks.wake(&loop); }
        ~Published() { m_tasks.wake(nullptr); }
        Published(const Published&) = delete;
        Published& operator=(const Published&) = delete;

      private:
        LoopTasks& m_tasks;
    };

    /// Returns when the loop's thread has run it; after its end it is run here. Any other thread.
    void onThread(std::function<void()> function);
    /// Makes the loop return from its wait. Any thread.
    void wakeUp();
    /// Runs what there is. On the loop's thread.
    void run();
    /// Runs what there is; the thread runs nothing that comes later.
    void end();

  private:
    void wake(pipewire::Loop* loop);

    std::mutex m_mutex;
    // Guarded by m_mutex:
    std::deque<std::packaged_task<void()>> m_waiting;
    pipewire::Loop* m_loop = nullptr; // while the thread has one
    bool m_isOver = false;
};

} // namespace vantro::capture::wayland
