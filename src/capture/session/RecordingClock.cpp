#include "capture/session/RecordingClock.h"

#include "base/Fatal.h"

#include <algorithm>

namespace vantro::capture {

void RecordingClock::advanceTo(base::HostTime time, State state) {
    base::require(m_state == State::waiting || time >= m_changed, "the host clock ran backwards");
    m_state = state;
    m_changed = time;
}

bool RecordingClock::start(base::HostTime zero) {
    base::require(isWaiting(), "a recording's clock is started twice");
    if (m_state == State::held || zero < m_changed)
        return false;
    advanceTo(zero, State::running);
    m_zero = zero;
    return true;
}

bool RecordingClock::pause(base::HostTime at) {
    if (m_state == State::waiting) {
        advanceTo(at, State::held);
        return true;
    }
    if (m_state != State::running)
        return false;
    advanceTo(at, State::paused);
    m_pauses.push_back({.start = at, .end = base::HostTime::max()});
    return true;
}

bool RecordingClock::resume(base::HostTime at) {
    if (!isPaused())
        return false;
    if (m_state == State::held) {
        m_heldFor += at - m_changed;
        advanceTo(at, State::waiting);
        return true;
    }
    advanceTo(at, State::running);
    m_pauses.back().end = at;
    return true;
}

void RecordingClock::stop(base::HostTime at) {
    if (m_state == State::held)
        m_heldFor += at - m_changed;
    if (isWaiting())
        m_zero = at;
    if (!isStopped())
        advanceTo(at, State::stopped);
}

std::optional<base::HostDuration> RecordingClock::movieTime(base::HostTime time) const {
    const bool isInPause = std::ranges::any_of(
        m_pauses, [time](const Pause& each) { return time >= each.start && time < each.end; });
    if (isWaiting() || time < m_zero || isInPause || (isStopped() && time > m_changed))
        return {};
    return length(time);
}

std::vector<MoviePart> RecordingClock::parts(base::HostTime from, base::HostTime to) const {
    std::vector<MoviePart> parts;
    if (isWaiting())
        return parts;
    from = std::max(from, m_zero);
    to = isStopped() ? std::min(to, m_changed) : to;
    const auto add = [&](base::HostTime end) {
        if (from < end)
            parts.push_back({.from = from, .to = end, .movieTime = length(from)});
    };
    for (const Pause& each : m_pauses) {
        add(std::min(to, each.start));
        from = std::max(from, each.end);
    }
    add(to);
    return parts;
}

base::HostTime RecordingClock::stopTime() const {
    base::require(isStopped(), "a recording's clock has not been stopped");
    return m_changed;
}

base::HostDuration RecordingClock::length(base::HostTime now) const {
    if (isWaiting() || now < m_zero)
        return {};
    const base::HostTime end = isStopped() ? std::min(now, m_changed) : now;
    return end - m_zero - pausedWithin(end);
}

base::HostDuration RecordingClock::pausedFor(base::HostTime now) const {
    if (m_state == State::held)
        return m_heldFor + (now - m_changed);
    return m_heldFor + pausedWithin(isStopped() ? std::min(now, m_changed) : now);
}

/// The pauses between its zero and `end`.
base::HostDuration RecordingClock::pausedWithin(base::HostTime end) const {
    base::HostDuration paused{};
    for (const Pause& each : m_pauses)
        if (each.start < end)
            paused += std::min(each.end, end) - each.start;
    return paused;
}

} // namespace vantro::capture
