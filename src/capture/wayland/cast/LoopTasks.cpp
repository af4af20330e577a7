#include "capture/wayland/cast/LoopTasks.h"

#include <utility>

namespace vantro::capture::wayland {

void LoopTasks::wake(pipewire::Loop* loop) {
    const std::lock_guard lock(m_mutex);
    m_loop = loop;
}

void LoopTasks::wakeUp() {
    const std::lock_guard lock(m_mutex);
    if (m_loop != nullptr)
        m_loop->wakeUp();
}

void LoopTasks::onThread(std::function<void()> function) {
    std::packaged_task<void()> task(std::move(function));
    auto done = task.get_future();
    {
        std::unique_lock lock(m_mutex);
        if (m_isOver) {
            lock.unlock();
            task();
            return done.get();
        }
        m_waiting.push_back(std::move(task));
        if (m_loop != nullptr)
            m_loop->wakeUp();
    }
    done.get();
}

void LoopTasks::run() {
    for (;;) {
        std::packaged_task<void()> task;
        {
            const std::lock_guard lock(m_mutex);
            if (m_waiting.empty())
                return;
            task = std::move(m_waiting.front());
            m_waiting.pop_front();
        }
        task();
    }
}

void LoopTasks::end() {
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
    }
    run();
}

} // namespace vantro::capture::wayland
