#include "base/SerialQueue.h"

#include "base/Fatal.h"

#include <pthread.h>

namespace vantro::base {

void setThreadName(const std::string& label) {
    constexpr std::size_t kernelLimit = 15;
    const auto start = label.size() > kernelLimit ? label.size() - kernelLimit : 0;
    pthread_setname_np(pthread_self(), label.c_str() + start);
}

SerialQueue::SerialQueue(std::string label)
    : m_label(std::move(label)), m_thread([this] { run(); }) {}

SerialQueue::~SerialQueue() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void SerialQueue::async(std::function<void()> task) {
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    m_wake.notify_one();
}

void SerialQueue::run() {
    setThreadName(m_label);
    for (;;) {
        std::function<void()> task;
        {
            std::unique_lock lock(m_mutex);
            m_wake.wait(lock, [this] { return m_ending || !m_tasks.empty(); });
            if (m_tasks.empty())
                return;
            task = std::move(m_tasks.front());
            m_tasks.pop_front();
        }
        task();
    }
}

void SerialQueue::requireOtherThread() const {
    require(std::this_thread::get_id() != m_thread.get_id(), "sync on the queue's own thread");
}

} // namespace vantro::base
