#include "base/SerialQueue.h"
#include "media/player/PlayerEngine.h"

#include <algorithm>
#include <chrono>

namespace vantro::media::player {
namespace {

using namespace std::chrono_literals;
using base::HostTime;

/// How often a start looks for the first sound.
constexpr auto soundPoll = 4ms;

} // namespace

void PlayerEngine::run(const std::stop_token& stop) {
    base::setThreadName("com.vantro.preview");
    while (!stop.stop_requested())
        if (!step())
            m_time->waitUntil(deadline(), stop);
    silence();
}

bool PlayerEngine::step() {
    return applyWishes() || redraw() || answerSeek() || showProxy() || refine() || followRate() ||
           beginToPlay() || keepClock() || tick() || showDue() || composeAhead();
}

HostTime PlayerEngine::deadline() const {
    const bool hasDevice = m_sounds && m_sound->hasDevice();
    const auto now = m_time->now();
    const std::lock_guard lock(m_mutex);
    auto earliest = HostTime::max();
    const auto consider = [&earliest](std::optional<HostTime> at) {
        earliest = std::min(earliest, at.value_or(earliest));
    };
    if (m_proxied && !m_seeks.givenUp().stop_requested())
        consider(m_proxiedDue);
    if (m_phase == PlayerPhase::paused)
        consider(m_refineAt);
    if (m_phase == PlayerPhase::starting)
        consider(hasDevice ? std::min(m_startDue, now + soundPoll) : m_startDue);
    if (m_phase != PlayerPhase::playing)
        return earliest;
    consider(m_clock.jumpAt());
    consider(m_clock.endAt());
    if (const auto* front = m_queue.front(); front != nullptr && front->composed)
        consider(m_clock.due(front->point.time, front->point.afterJump));
    for (const auto& tick : m_ticks)
        consider(tick.next);
    return earliest;
}

bool PlayerEngine::applyWishes() {
    if (!m_sound)
        return false;
    const auto now = m_time->now();
    Wishes wishes;
    std::optional<PlannedJump> jump;
    bool stops = false;
    {
        const std::lock_guard lock(m_mutex);
        wishes.mix = std::exchange(m_wishes.mix, {});
        wishes.muted = std::exchange(m_wishes.muted, {});
        wishes.soundJump = std::exchange(m_wishes.soundJump, false);
        jump = jumpAhead(now);
        stops = m_phase == PlayerPhase::seeking;
    }
    if (wishes.mix)
        m_sound->setMix(*wishes.mix);
    if (wishes.muted)
        m_sound->setMuted(*wishes.muted);
    if (stops)
        silence();
    else if (wishes.soundJump && m_sounds)
        m_sound->planJump(jump);
    return false;
}

bool PlayerEngine::tick() {
    const auto now = m_time->now();
    std::vector<int> due;
    {
        const std::lock_guard lock(m_mutex);
        if (m_phase != PlayerPhase::playing)
            return false;
        for (auto& each : m_ticks) {
            if (each.next > now)
                continue;
            due.push_back(each.number);
            each.next = std::max(each.next + each.interval, now);
        }
    }
    for (const int number : due)
        m_events.tick(number);
    return !due.empty();
}

bool PlayerEngine::showDue() {
    const auto now = m_time->now();
    QueuedPicture picture;
    HostTime due;
    std::string problem;
    {
        const std::lock_guard lock(m_mutex);
        if (m_phase != PlayerPhase::playing)
            return false;
        m_counts.dropped += m_queue.dropLate(m_clock, now);
        readAhead();
        const auto* front = m_queue.front();
        if (front == nullptr && !m_readProblem.empty())
            problem = m_readProblem;
        else if (front == nullptr || !front->composed)
            return false;
        if (problem.empty()) {
            due = m_clock.due(front->point.time, front->point.afterJump);
            if (due > now)
                return false;
            picture = m_queue.takeFront();
            m_shownTime = picture.point.time;
            m_preliminary.reset();
            ++m_counts.shown;
            const double period = m_frameDuration.seconds() / std::min(m_playedRate, 1.0);
            m_counts.late += base::inSeconds(now - due) > period / 2 ? 1 : 0;
            readAhead();
        }
    }
    if (!problem.empty()) {
        fail(problem);
        return true;
    }
    show(std::move(picture.composed), {picture.point.time, picture.source}, due);
    return true;
}

bool PlayerEngine::composeAhead() {
    PathPoint point;
    VideoFrame source;
    {
        const std::lock_guard lock(m_mutex);
        const auto* next = m_queue.toCompose();
        const bool plays = m_phase == PlayerPhase::starting || m_phase == PlayerPhase::playing;
        if (!plays || next == nullptr)
            return false;
        point = next->point;
        source = next->source;
    }
    auto pixels = compose({point.time, source});
    if (pixels) {
        const std::lock_guard lock(m_mutex);
        m_queue.setComposed(point, std::move(pixels));
    }
    return true;
}

} // namespace vantro::media::player
