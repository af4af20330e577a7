#include "app/flows/Countdown.h"

#include <chrono>
#include <utility>

namespace vantro::app::flows {

using namespace std::chrono_literals;

Countdown::Countdown(MainTimers& timers, TaskRunner& tasks, std::function<void()> changed,
                     std::function<void()> ended)
    : m_timers(timers), m_tasks(tasks), m_changed(std::move(changed)), m_ended(std::move(ended)) {}

void Countdown::start(int seconds) {
    setRemaining(seconds);
    m_timer = m_timers.repeat(1s, [this] { tick(); });
}

void Countdown::cancel() {
    m_timer.reset();
    setRemaining(0);
}

void Countdown::tick() {
    if (!m_timer)
        return;
    setRemaining(m_remaining - 1);
    if (m_remaining > 0)
        return;
    // The timer is running this very function: it goes once that has returned.
    m_tasks.onMain([finished = std::exchange(m_timer, nullptr)] {});
    m_ended();
}

void Countdown::setRemaining(int seconds) {
    if (std::exchange(m_remaining, seconds) != seconds)
        m_changed();
}

} // namespace vantro::app::flows
