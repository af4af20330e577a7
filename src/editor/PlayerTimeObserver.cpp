#include "editor/PlayerTimeObserver.h"

#include "base/Fatal.h"
#include "ui/TimeText.h"

#include <QPointer>
#include <QThread>
#include <algorithm>
#include <cmath>

namespace vantro::editor {
namespace {

using media::MediaTime;

constexpr MediaTime tickInterval{1, 30};
constexpr MediaTime exactly{0};
constexpr MediaTime scrubTolerance{1, 10};
constexpr double endMargin = 0.05;    // seconds: Play this close to the end starts over
constexpr double insideMargin = 0.01; // seconds: just inside the end of a range
constexpr double rateTolerance = 0.01;

/// Writes `value` and tells whether it is another one.
template <typename Value>
bool changed(Value& field, const Value& value) {
    if (field == value)
        return false;
    field = value;
    return true;
}

QVariant variantOf(const std::optional<double>& value) {
    return value ? QVariant(*value) : QVariant();
}

} // namespace

PlayerTimeObserver::PlayerTimeObserver() = default;

PlayerTimeObserver::~PlayerTimeObserver() = default;

void PlayerTimeObserver::attach(const std::shared_ptr<PlayerControl>& player) {
    detach();
    m_player = player;
    m_time = player->observeTime(tickInterval, [this](MediaTime time) { tick(time); });
    m_rate = player->observeRate([this] {
        requireOwnThread();
        if (const auto attached = m_player.lock())
            setPlaying(attached->rate() > 0);
    });
    m_durationKnown = player->observeDuration([this] { followDuration(); });
    m_end = player->observeEnd([this] {
        requireOwnThread();
        if (!m_isScrubbing)
            restart();
    });
    setPlaying(player->rate() > 0);
    followDuration();
}

void PlayerTimeObserver::detach() {
    m_time = {};
    m_rate = {};
    m_durationKnown = {};
    m_end = {};
    m_player.reset();
    m_isSeeking = false;
    ++m_attached;
}

void PlayerTimeObserver::followDuration() {
    requireOwnThread();
    const auto player = m_player.lock();
    if (const auto known = player ? player->duration() : std::nullopt)
        setDuration(known->seconds());
}

void PlayerTimeObserver::setSegments(model::SharedList<model::TimelineSegment> segments) {
    m_segments = std::move(segments);
    m_rules = PlaybackRules(m_segments.list(), m_duration);
    if (m_duration > 0) {
        const bool none = m_segments.empty();
        setTrimTimes(
            none ? std::nullopt : std::optional(m_segments.front().startFraction * m_duration),
            none ? std::nullopt : std::optional(m_segments.back().endFraction * m_duration));
    }
    if (const auto player = m_player.lock())
        planJump(*player, m_currentTime);
}

void PlayerTimeObserver::setScrubbing(bool scrubbing) {
    if (!changed(m_isScrubbing, scrubbing))
        return;
    Q_EMIT isScrubbingChanged();
    const auto player = m_player.lock();
    if (player && scrubbing)
        player->planJump({}); // nothing moves by itself under the pointer
    else if (player)
        seekExactly(MediaTime::fromSeconds(m_currentTime));
}

QString PlayerTimeObserver::currentTimeLabel() const {
    return ui::transportText(m_currentTime);
}

QString PlayerTimeObserver::durationLabel() const {
    return ui::transportText(m_duration);
}

QVariant PlayerTimeObserver::trimStartValue() const {
    return variantOf(m_trimStartTime);
}

QVariant PlayerTimeObserver::trimEndValue() const {
    return variantOf(m_trimEndTime);
}

void PlayerTimeObserver::tick(MediaTime time) {
    requireOwnThread();
    if (m_isScrubbing)
        return;
    setCurrentTime(time.seconds());
    const auto player = m_player.lock();
    if (player && m_isPlaying && !m_isSeeking)
        followRules(*player);
}

void PlayerTimeObserver::followRules(PlayerControl& player) {
    const double t = m_currentTime;
    if (m_rules.empty()) {
        if (m_trimEndTime && t >= *m_trimEndTime)
            restart();
        return;
    }
    const PlayedRange* range = m_rules.at(t);
    if (!PlaybackRules::plays(range, t))
        return jump(player, m_rules.after(t));
    planJump(player, t);
    if (std::abs(player.rate() - range->speed) > rateTolerance)
        player.setRate(range->speed);
}

void PlayerTimeObserver::restart() {
    const auto player = m_player.lock();
    if (!player || m_isSeeking)
        return;
    jump(*player, m_rules.empty() ? PlayingPoint{boundaryNotBefore(m_trimStartTime.value_or(0)), 1}
                                  : m_rules.start());
}

void PlayerTimeObserver::jump(PlayerControl& player, PlayingPoint target) {
    m_isSeeking = true;
    m_playsAfterSeek = true;
    planJump(player, target.time.seconds());
    player.seek(target.time, exactly,
                [self = QPointer(this), attached = m_attached, rate = target.rate](bool finished) {
                    if (!self || self->m_attached != attached)
                        return;
                    self->requireOwnThread();
                    self->m_isSeeking = false;
                    const auto current = self->m_player.lock();
                    if (!current || !finished || !self->m_playsAfterSeek)
                        return;
                    current->setRate(rate);
                    self->setPlaying(true);
                });
}

void PlayerTimeObserver::play(PlayerControl& player, double rate) {
    planJump(player, m_currentTime);
    player.setRate(rate);
}

void PlayerTimeObserver::planJump(PlayerControl& player, double t) const {
    if (!m_isScrubbing)
        player.planJump(m_rules.nextJump(t));
}

void PlayerTimeObserver::togglePlayPause() {
    const auto player = m_player.lock();
    if (!player)
        return;
    if (player->rate() > 0) {
        m_playsAfterSeek = false;
        return player->setRate(0);
    }
    if (m_isSeeking) {
        m_playsAfterSeek = !m_playsAfterSeek;
        return;
    }
    if (m_currentTime >= endTime() - endMargin)
        return restart();
    const PlayedRange* range = m_rules.at(m_currentTime);
    if (m_rules.empty() || PlaybackRules::plays(range, m_currentTime))
        return play(*player, range == nullptr ? 1 : range->speed);
    jump(*player, m_rules.after(m_currentTime));
}

void PlayerTimeObserver::skipBackward(double seconds) {
    double t = m_currentTime - seconds;
    if (!m_rules.empty() && m_rules.at(t) == nullptr)
        if (const PlayedRange* range = m_rules.lastStartingBefore(m_currentTime))
            t = range->end - insideMargin;
    seekExactly(MediaTime::fromSeconds(std::max(t, m_trimStartTime.value_or(0))));
}

void PlayerTimeObserver::skipForward(double seconds) {
    const double t = m_currentTime + seconds;
    const PlayedRange* range = nullptr;
    if (!m_rules.empty() && m_rules.at(t) == nullptr)
        range = m_rules.firstStartingAfter(m_currentTime);
    const auto target =
        range != nullptr ? boundaryNotBefore(range->start) : MediaTime::fromSeconds(t);
    seekExactly(std::min(target, MediaTime::fromSeconds(endTime())));
}

void PlayerTimeObserver::seek(double fraction) {
    const auto player = m_player.lock();
    if (!player || !(fraction >= 0 && fraction <= 1))
        return;
    const double target = m_duration * fraction;
    if (m_isScrubbing) {
        player->seek(MediaTime::fromSeconds(target), scrubTolerance, [](bool) {});
        return setCurrentTime(target);
    }
    player->seek(MediaTime::fromSeconds(target), exactly,
                 [self = QPointer(this), fraction](bool finished) {
                     if (!self || !finished)
                         return;
                     self->requireOwnThread();
                     self->setCurrentTime(self->m_duration * fraction);
                 });
}

void PlayerTimeObserver::goToStart() {
    seekExactly(boundaryNotBefore(m_trimStartTime.value_or(0)));
}

void PlayerTimeObserver::goToEnd() {
    // The latest picture before the end is the one that is shown a moment before it.
    const auto end = boundaryNotBefore(endTime()) - MediaTime{1};
    seekExactly(std::max(end, MediaTime{}));
}

void PlayerTimeObserver::seekExactly(MediaTime to) {
    if (const auto player = m_player.lock())
        player->seek(to, exactly, [](bool) {});
}

void PlayerTimeObserver::setCurrentTime(double seconds) {
    if (!changed(m_currentTime, seconds))
        return;
    Q_EMIT currentTimeChanged();
    Q_EMIT progressChanged();
}

void PlayerTimeObserver::setDuration(double seconds) {
    if (!changed(m_duration, seconds))
        return;
    Q_EMIT durationChanged();
    Q_EMIT progressChanged();
    setSegments(m_segments);
}

void PlayerTimeObserver::setPlaying(bool playing) {
    if (changed(m_isPlaying, playing))
        Q_EMIT isPlayingChanged();
}

void PlayerTimeObserver::setTrimTimes(std::optional<double> start, std::optional<double> end) {
    const bool startChanged = changed(m_trimStartTime, start);
    const bool endChanged = changed(m_trimEndTime, end);
    if (startChanged)
        Q_EMIT trimStartTimeChanged();
    if (endChanged)
        Q_EMIT trimEndTimeChanged();
}

void PlayerTimeObserver::requireOwnThread() const {
    base::require(QThread::currentThread() == thread(),
                  "Incorrect actor executor assumption; Expected same executor as");
}

} // namespace vantro::editor
