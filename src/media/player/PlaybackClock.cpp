#include "media/player/PlaybackClock.h"

#include "base/Fatal.h"

#include <algorithm>
#include <cmath>

namespace vantro::media::player {
namespace {

using base::HostDuration;
using base::HostTime;

constexpr double slowestRate = 0.25;
constexpr double fastestRate = 16;
constexpr std::int32_t timescale = 90'000;
/// Differences to the sound, in seconds of host time: below the first nothing is done; beyond the
/// last the pictures jump after the sound, or wait for it.
constexpr double unheardDifference = 0.002;
constexpr double largestDifference = 0.3;
constexpr double correctionTime = 0.25; // seconds to make up for a difference, where that is small
constexpr double largestCorrection = 0.1;
constexpr double waitingSpeed = 0.1;

HostDuration spanOf(double seconds) {
    return HostDuration(static_cast<HostDuration::rep>(std::ceil(seconds * 1e9)));
}

} // namespace

double playableRate(double rate) {
    return rate > 0 ? std::clamp(rate, slowestRate, fastestRate) : 0;
}

double PlaybackClock::runningSeconds(HostTime now) const {
    return m_seconds + std::max(base::inSeconds(now - m_at), 0.0) * m_speed;
}

double PlaybackClock::secondsAt(HostTime now) const {
    if (!isRunning())
        return m_stood.seconds();
    double seconds = runningSeconds(now);
    if (m_jump)
        if (const auto at = startOf(*m_jump); now >= at)
            seconds = m_jump->to.seconds() + base::inSeconds(now - at) * m_jump->rate;
    return std::min(seconds, m_end.seconds());
}

MediaTime PlaybackClock::timeAt(HostTime now) const {
    return isRunning() ? std::min(MediaTime::fromSeconds(secondsAt(now), timescale), m_end)
                       : m_stood;
}

void PlaybackClock::stop(MediaTime time) {
    m_stood = std::clamp(time, MediaTime{}, m_end);
    m_rate = 0;
    m_speed = 0;
    m_jump.reset();
    m_made.reset();
}

void PlaybackClock::start(HostTime now, double seconds, double rate) {
    m_at = now;
    m_seconds = seconds;
    m_rate = rate;
    m_speed = rate;
    m_jump.reset();
    m_made.reset();
}

void PlaybackClock::setJump(std::optional<PlannedJump> jump, HostTime now) {
    if (jump && (!isRunning() || jump->from.seconds() <= runningSeconds(now)))
        jump.reset();
    m_jump = jump;
}

std::optional<HostTime> PlaybackClock::jumpAt() const {
    if (!m_jump)
        return {};
    return startOf(*m_jump);
}

HostTime PlaybackClock::startOf(const PlannedJump& jump) const {
    return dueFrom(m_at, jump.from.seconds() - m_seconds, m_speed);
}

PlannedJump PlaybackClock::makeJump() {
    if (!m_jump)
        base::fatal("no jump is ahead");
    const auto jump = *m_jump;
    m_made = PlannedJump{jump.from, jump.to, m_rate};
    m_at = startOf(jump);
    m_seconds = jump.to.seconds();
    m_speed = jump.rate;
    m_rate = jump.rate;
    m_jump.reset();
    return jump;
}

HostTime PlaybackClock::dueFrom(HostTime at, double seconds, double speed) const {
    return at + spanOf(seconds / speed);
}

HostTime PlaybackClock::due(MediaTime time, bool afterJump) const {
    if (afterJump && m_jump)
        return dueFrom(startOf(*m_jump), time.seconds() - m_jump->to.seconds(), m_jump->rate);
    return dueFrom(m_at, time.seconds() - m_seconds, m_speed);
}

std::optional<HostTime> PlaybackClock::endAt() const {
    if (m_jump && m_jump->from <= m_end)
        return {};
    return dueFrom(m_at, m_end.seconds() - m_seconds, m_speed);
}

/// By how many seconds of the item the sound is ahead. Around a jump it may be heard from the other
/// side of it: whichever way is nearer is meant.
double PlaybackClock::soundAhead(const SoundReading& reading) const {
    const double here = m_seconds + base::inSeconds(reading.at - m_at) * m_speed;
    const double heard = reading.time.seconds();
    double ahead = heard - here;
    const auto consider = [&](double otherwise) {
        if (std::abs(otherwise - here) < std::abs(ahead))
            ahead = otherwise - here;
    };
    if (m_jump)
        consider(m_jump->from.seconds() + (heard - m_jump->to.seconds()) * m_rate / m_jump->rate);
    if (m_made)
        consider(m_made->to.seconds() + (heard - m_made->from.seconds()) * m_rate / m_made->rate);
    return ahead;
}

void PlaybackClock::follow(const SoundReading& reading, HostTime now) {
    const double ahead = soundAhead(reading);
    const double difference = ahead / m_rate;
    m_seconds = runningSeconds(now);
    m_at = std::max(m_at, now);
    if (std::abs(difference) < unheardDifference) {
        m_speed = m_rate;
    } else if (difference > largestDifference) {
        // Never over a jump, whose pictures and sound are told apart by it.
        const double limit = m_jump ? m_jump->from.seconds() : m_end.seconds();
        m_seconds = std::max(m_seconds, std::min(m_seconds + ahead, limit));
        m_speed = m_rate;
    } else if (difference < -largestDifference) {
        m_speed = m_rate * waitingSpeed;
    } else {
        m_speed = m_rate * (1 + std::clamp(difference / correctionTime, -largestCorrection,
                                           largestCorrection));
    }
}

} // namespace vantro::media::player
