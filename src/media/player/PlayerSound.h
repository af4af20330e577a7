#pragma once

#include "base/HostClock.h"
#include "media/player/PlayerControl.h"
#include "media/values/TrackMix.h"

#include <optional>
#include <vector>

namespace vantro::media::player {

/// What was heard when: `time` of the item left the loudspeaker at `at`.
struct SoundReading {
    MediaTime time;
    base::HostTime at;
    bool operator==(const SoundReading&) const = default;
};

/// The sound of a player: every track of a composition, mixed by its volume, at any rate with its
/// pitch kept, and a clock that the device drives.
///
/// Without a server or a device it is silent and has no clock; when one appears, playing is heard
/// from then on. Nothing here fails a player. Thread-safety: the player's own thread.
class PlayerSound {
  public:
    virtual ~PlayerSound() = default;

    /// Plays from `from` at `rate` (0.25 to 16). What sounded before is cut off, with a fade that
    /// no ear takes for a click. A planned jump is made without a hole.
    virtual void play(MediaTime from, double rate, std::optional<PlannedJump> jump) = 0;
    /// Another jump while playing goes on.
    virtual void planJump(std::optional<PlannedJump> jump) = 0;
    virtual void pause() = 0;
    /// For each audio track, in the composition's order. Volumes are heard at once, the rest within
    /// a quarter of a second.
    virtual void setMix(std::vector<TrackMix> mix) = 0;
    virtual void setMuted(bool muted) = 0;
    /// Whether a device takes the sound, so that readings will follow `play`: pictures then wait
    /// for the first.
    virtual bool hasDevice() const = 0;
    /// The newest reading since `play`; nothing until the first sample is heard, and where there is
    /// no device. Across a planned jump readings follow what is heard.
    virtual std::optional<SoundReading> reading() const = 0;
};

} // namespace vantro::media::player
