#pragma once

#include "base/HostClock.h"
#include "media/player/PlayerControl.h"
#include "media/player/PlayerSound.h"

#include <optional>

namespace vantro::media::player {

/// The nearest rate that can be played; 0 stays.
double playableRate(double rate);

/// Where in an item playing is at an instant of host time. A value.
///
/// It stands at a time, or runs from one at a rate, over at most one jump ahead. Sound that is
/// heard corrects it: it then runs a little faster or slower until both agree, and never backward.
class PlaybackClock {
  public:
    PlaybackClock() = default;
    /// Stands at zero; never leaves 0 to `end`.
    explicit PlaybackClock(MediaTime end) : m_end(end) {}

    bool isRunning() const { return m_speed > 0; }
    double rate() const { return m_rate; } ///< as started; 0 while it stands
    MediaTime timeAt(base::HostTime now) const;
    double secondsAt(base::HostTime now) const;

    void stop(MediaTime time);
    /// Runs from `seconds`, which is the time at `now`. Forgets the jump.
    void start(base::HostTime now, double seconds, double rate);
    /// Replaces the jump ahead. One that `now` is past of is none.
    void setJump(std::optional<PlannedJump> jump, base::HostTime now);
    /// When the jump is made.
    std::optional<base::HostTime> jumpAt() const;
    /// Goes on behind the jump ahead, which must be there, and returns it.
    PlannedJump makeJump();
    /// When `time` is played: before the jump, or behind it. Only while running.
    base::HostTime due(MediaTime time, bool afterJump) const;
    /// When the item's end is reached; nothing where a jump comes first. Only while running.
    std::optional<base::HostTime> endAt() const;

    /// Goes by what is heard.
    void follow(const SoundReading& reading, base::HostTime now);

  private:
    double runningSeconds(base::HostTime now) const;
    base::HostTime startOf(const PlannedJump& jump) const;
    base::HostTime dueFrom(base::HostTime at, double seconds, double speed) const;
    double soundAhead(const SoundReading& reading) const;

    MediaTime m_end;
    MediaTime m_stood;    ///< where it stands
    base::HostTime m_at;  ///< when it was at m_seconds
    double m_seconds = 0; ///< of the item
    double m_rate = 0;    ///< what was asked for
    double m_speed = 0;   ///< at which it runs, corrections included; 0: it stands
    std::optional<PlannedJump> m_jump;
    /// The last jump made, at the rate before it: sound may still be heard from before.
    std::optional<PlannedJump> m_made;
};

} // namespace vantro::media::player
