#pragma once

#include "editor/PlaybackRules.h"
#include "model/SharedList.h"

#include <QObject>
#include <QVariant>
#include <memory>
#include <optional>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor {

/// The editor's one source of truth about the preview's player, and its only way to drive it: where
/// the playhead is, whether it plays, and what of the movie is kept. Enforces the edit while
/// playing: jumps over what was cut, plays each segment at its speed, and starts over at the end.
///
/// Times are seconds of the movie. A write of an equal value tells nobody. Without a player the
/// driving operations do nothing. A paused player never starts by itself. Main thread; callbacks on
/// any other are fatal.
class PlayerTimeObserver : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(double currentTime READ currentTime NOTIFY currentTimeChanged)
    Q_PROPERTY(double duration READ duration NOTIFY durationChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
    Q_PROPERTY(bool isScrubbing READ isScrubbing WRITE setScrubbing NOTIFY isScrubbingChanged)
    Q_PROPERTY(QVariant trimStartTime READ trimStartValue NOTIFY trimStartTimeChanged)
    Q_PROPERTY(QVariant trimEndTime READ trimEndValue NOTIFY trimEndTimeChanged)
    Q_PROPERTY(QString currentTimeLabel READ currentTimeLabel NOTIFY currentTimeChanged)
    Q_PROPERTY(QString durationLabel READ durationLabel NOTIFY durationChanged)

  public:
    PlayerTimeObserver();
    ~PlayerTimeObserver() override;

    /// Follows `player`, which its owner keeps alive, in place of any earlier one.
    void attach(const std::shared_ptr<media::player::PlayerControl>& player);
    /// Lets go of the player; the fields keep their values.
    void detach();

    /// What the edit keeps. The trim times follow once the duration is known.
    void setSegments(model::SharedList<model::TimelineSegment> segments);
    const model::SharedList<model::TimelineSegment>& segments() const { return m_segments; }

    double currentTime() const { return m_currentTime; } ///< the playhead
    double duration() const { return m_duration; }       ///< 0: not known yet
    double progress() const { return m_duration > 0 ? m_currentTime / m_duration : 0; }
    bool isPlaying() const { return m_isPlaying; }
    /// True while the user drags the playhead or any handle.
    bool isScrubbing() const { return m_isScrubbing; }
    /// Set by who drags. Letting go shows the exact picture of the last place.
    void setScrubbing(bool scrubbing);
    const std::optional<double>& trimStartTime() const { return m_trimStartTime; }
    const std::optional<double>& trimEndTime() const { return m_trimEndTime; }
    QString currentTimeLabel() const;
    QString durationLabel() const;

    /// At the end of what is kept, Play starts over; in a gap it goes on behind it.
    Q_INVOKABLE void togglePlayPause();
    /// Places in a gap give way to the end of the range before, or the start of the one behind.
    Q_INVOKABLE void skipBackward(double seconds);
    Q_INVOKABLE void skipForward(double seconds);
    /// To a fraction of the movie, 0 to 1; near it, and at once, while scrubbing.
    Q_INVOKABLE void seek(double fraction);
    /// To the first and to the last picture of what is kept.
    Q_INVOKABLE void goToStart();
    Q_INVOKABLE void goToEnd();

  Q_SIGNALS:
    void currentTimeChanged();
    void durationChanged();
    void progressChanged();
    void isPlayingChanged();
    void isScrubbingChanged();
    void trimStartTimeChanged();
    void trimEndTimeChanged();

  private:
    using PlayerControl = media::player::PlayerControl;

    QVariant trimStartValue() const;
    QVariant trimEndValue() const;
    void setCurrentTime(double seconds);
    void setDuration(double seconds);
    void setPlaying(bool playing);
    void setTrimTimes(std::optional<double> start, std::optional<double> end);
    double endTime() const { return m_trimEndTime.value_or(m_duration); }
    void requireOwnThread() const;

    void followDuration();
    void tick(media::MediaTime time);
    void followRules(PlayerControl& player);
    void restart();
    void jump(PlayerControl& player, PlayingPoint target);
    void play(PlayerControl& player, double rate);
    /// Tells the player what happens next when it plays on from `t`.
    void planJump(PlayerControl& player, double t) const;
    void seekExactly(media::MediaTime to);

    double m_currentTime = 0;
    double m_duration = 0;
    bool m_isPlaying = false;
    bool m_isScrubbing = false;
    std::optional<double> m_trimEndTime;
    std::optional<double> m_trimStartTime;
    model::SharedList<model::TimelineSegment> m_segments;
    PlaybackRules m_rules; ///< of the segments and the duration

    std::weak_ptr<PlayerControl> m_player;
    bool m_isSeeking = false;      ///< a jump of ours is under way
    bool m_playsAfterSeek = false; ///< it ends in playing
    int m_attached = 0;            ///< tells players apart
    media::player::Observation m_time;
    media::player::Observation m_rate;
    media::player::Observation m_durationKnown;
    media::player::Observation m_end;
};

} // namespace vantro::editor
