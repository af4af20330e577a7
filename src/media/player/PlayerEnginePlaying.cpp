// How playing begins, keeps its time, jumps and ends, with the sound where there is one.
#include "media/player/PlayerEngine.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace vantro::media::player {
namespace {

using namespace std::chrono_literals;
using base::HostTime;

/// Playing begins without pictures or sound that take longer to come.
constexpr auto longestStart = 500ms;
/// What was heard longer ago says nothing: the device has gone.
constexpr auto oldestReading = 500ms;

} // namespace

void PlayerEngine::silence() {
    if (std::exchange(m_sounds, false))
        m_sound->pause();
}

bool PlayerEngine::followRate() {
    const auto now = m_time->now();
    std::optional<PlannedJump> jump;
    MediaTime from;
    double rate = 0;
    {
        const std::lock_guard lock(m_mutex);
        rate = playableRate(m_rate);
        const bool plays = m_phase == PlayerPhase::starting || m_phase == PlayerPhase::playing;
        if (rate == 0 && plays) {
            pause(now);
        } else if (rate > 0 &&
                   (m_phase == PlayerPhase::paused || (plays && rate != m_playedRate))) {
            start(now, rate);
            jump = jumpAhead(now);
            from = m_clock.timeAt(now);
        } else if (m_phase == PlayerPhase::failed && m_rate != 0) {
            m_rate = 0;
        } else {
            return false;
        }
    }
    if (rate == 0) {
        silence();
        m_events.timeJumped();
    } else if (m_sound && from < m_end) {
        m_sound->play(from, rate, jump);
        m_sounds = true;
    }
    return true;
}

void PlayerEngine::start(HostTime now, double rate) {
    m_clock.stop(m_clock.timeAt(now));
    if (m_phase != PlayerPhase::starting)
        follow(m_phase, PlayerPhase::starting);
    m_playedRate = rate;
    m_slowReads = 0;
    m_readsKeyframes = false;
    m_startDue = now + longestStart;
    m_refineAt.reset();
    m_wishes.soundJump = false;
    m_queue.setPath(path(now));
    readAhead();
    prepareJump();
}

/// Stands at the picture that is seen, so that it is the one of the time that is told.
void PlayerEngine::pause(HostTime now) {
    const auto time = m_clock.timeAt(now);
    const double since = time.seconds() - m_shownTime.seconds();
    const double mostSince = 2 * m_frameDuration.seconds() * std::max(m_playedRate, 1.0);
    m_clock.stop(since >= 0 && since < mostSince ? m_shownTime : time);
    follow(m_phase, PlayerPhase::paused);
}

bool PlayerEngine::isPrepared() const {
    return m_queue.isReady() || !m_readProblem.empty();
}

std::optional<SoundReading> PlayerEngine::heard(HostTime now) const {
    const auto reading = m_sounds ? m_sound->reading() : std::nullopt;
    return reading && now - reading->at < oldestReading ? reading : std::nullopt;
}

bool PlayerEngine::beginToPlay() {
    const bool awaitsSound = m_sounds && m_sound->hasDevice();
    const auto now = m_time->now();
    const auto reading = heard(now);
    std::optional<PlannedJump> jump;
    MediaTime from;
    double rate = 0;
    {
        const std::lock_guard lock(m_mutex);
        if (m_phase != PlayerPhase::starting)
            return false;
        const bool isReady = reading ? true : !awaitsSound && isPrepared();
        if (!isReady && now < m_startDue)
            return false;
        double seconds = m_clock.secondsAt(now);
        if (reading)
            seconds = std::max(seconds, reading->time.seconds() +
                                            base::inSeconds(now - reading->at) * m_playedRate);
        jump = jumpAhead(now);
        rate = m_playedRate;
        m_clock.start(now, std::min(seconds, jump ? jump->from.seconds() : m_end.seconds()), rate);
        m_clock.setJump(jump, now);
        from = m_clock.timeAt(now);
        follow(m_phase, PlayerPhase::playing);
        for (auto& tick : m_ticks)
            tick.next = now + tick.interval;
    }
    if (awaitsSound && !reading)
        m_sound->play(from, rate, jump); // once it is heard, it is where the pictures are by then
    return true;
}

bool PlayerEngine::keepClock() {
    const auto now = m_time->now();
    const auto reading = heard(now);
    bool hasJumped = false;
    bool hasEnded = false;
    double rateBefore = 0;
    double rateAfter = 0;
    {
        const std::lock_guard lock(m_mutex);
        if (m_phase != PlayerPhase::playing)
            return false;
        if (reading)
            m_clock.follow(*reading, now);
        rateBefore = m_rate;
        const auto jumpAt = m_clock.jumpAt();
        const auto endAt = m_clock.endAt();
        hasJumped = jumpAt && *jumpAt <= now;
        hasEnded = endAt && *endAt <= now;
        if (hasJumped)
            makeJump();
        else if (hasEnded)
            end();
        rateAfter = m_rate;
    }
    if (hasEnded)
        silence();
    if (rateAfter != rateBefore)
        m_events.rateChanged();
    if (hasJumped || hasEnded)
        m_events.timeJumped();
    if (hasEnded)
        m_events.ended();
    return hasJumped || hasEnded;
}

void PlayerEngine::makeJump() {
    const auto jump = m_clock.makeJump();
    // What was set meanwhile holds.
    if (m_rate != 0)
        m_rate = m_jump ? m_jump->rate : jump.rate;
    m_playedRate = jump.rate;
    m_jump.reset();
    if (jump.from != jump.to) {
        m_active = 1 - m_active;
        m_prepared.reset();
    }
    if (m_reading)
        m_reading->afterJump = false;
    m_queue.jumpMade(jump.to, {m_frameDuration, m_playedRate, {}, m_end});
    readAhead();
}

void PlayerEngine::end() {
    m_clock.stop(m_end);
    m_queue.begin(m_end, {m_frameDuration, m_playedRate, {}, m_end});
    m_rate = 0;
    follow(m_phase, PlayerPhase::paused);
}

} // namespace vantro::media::player
