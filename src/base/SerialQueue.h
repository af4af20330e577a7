#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <thread>

namespace vantro::base {

/// Runs submitted tasks one after the other on a thread of its own, in the order of submission.
///
/// Overflow: the queue itself is unbounded; whoever submits per-frame work bounds it (see
/// BoundedQueue). Destruction runs what is queued, then joins. Thread-safety: any thread may
/// submit; `sync` from the queue's own thread is fatal (it would wait for itself).
class SerialQueue {
  public:
    /// `label` names the thread in debuggers (the kernel keeps its last 15 characters).
    explicit SerialQueue(std::string label);
    ~SerialQueue();
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;

    void async(std::function<void()> task);

    /// Waits until everything submitted before and `task` itself have run; its result or exception
    /// is the caller's.
    template <typename Task>
    auto sync(Task&& task) -> std::invoke_result_t<Task> {
        requireOtherThread();
        std::packaged_task<std::invoke_result_t<Task>()> packaged(std::forward<Task>(task));
        auto result = packaged.get_future();
        async([&packaged] { packaged(); });
        return result.get();
    }

    const std::string& label() const { return m_label; }

  private:
    void run();
    void requireOtherThread() const;

    std::string m_label;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_tasks; // guarded by m_mutex
    bool m_ending = false;                     // guarded by m_mutex
    std::thread m_thread;
};

/// Names the calling thread, keeping the end of the label, which tells queues apart.
void setThreadName(const std::string& label);

} // namespace vantro::base
