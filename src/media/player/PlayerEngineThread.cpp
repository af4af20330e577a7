#include "base/SerialQueue.h"
#include "media/player/PlayerEngine.h"

#include <algorithm>
#include <chrono>

namespace vantro::media::player {
namespace {

using namespace std::chrono_literals;
using base::HostTime;

/// Playing begins without pictures or sound that take longer to come.
constexpr auto longestStart = 500ms;
/// How often a start looks for the first sound.
constexpr auto soundPoll = 4ms;
/// What was heard longer ago says nothing: the device has gone.
constexpr auto oldestReading = 500ms;

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
        consider(hasDevice ? std::min(m_startedAt + longestStart, now + soundPoll)
                           : m_startedAt + longestStart);
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
        wishes.volumes = std::exchange(m_wishes.volumes, {});
        wishes.muted = std::exchange(m_wishes.muted, {});
        wishes.soundJump = std::exchange(m_wishes.soundJump, false);
        jump = jumpAhead(now);
        stops = m_phase == PlayerPhase::seeking;
    }
    if (wishes.volumes)
        m_sound->setVolumes(*wishes.volumes);
    if (wishes.muted)
        m_sound->setMuted(*wishes.muted);
    if (stops)
        silence();
    else if (wishes.soundJump && m_sounds)
        m_sound->planJump(jump);
    return false;
}

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
    m_startedAt = now;
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
        if (!isReady && now < m_startedAt + longestStart)
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
