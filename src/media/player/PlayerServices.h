#pragma once

#include "base/HostClock.h"
#include "media/Composition.h"
#include "media/VideoComposition.h"
#include "media/player/PlayerSound.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>

namespace vantro::media::player {

/// What a player plays.
struct PlayerItem {
    Composition composition;
    VideoComposition video; ///< its compositor is called on the player's thread only
};

/// A composed picture, fitted to the output size.
struct PlayerPicture {
    std::shared_ptr<const PixelBuffer> pixels; ///< bgra
    MediaTime time;                            ///< of the item
    base::HostTime due;       ///< when it should be seen; now, where it answers a seek
    std::uint64_t number = 0; ///< rises by one with each picture handed out
    /// Drawn over a small copy of the movie's picture; the one over the movie's own follows.
    bool isPreliminary = false;
};

/// Pictures since playing began.
struct PlayerCounts {
    std::uint64_t shown = 0;
    std::uint64_t dropped = 0; ///< due, and given up because the next was due as well
    std::uint64_t late = 0;    ///< shown more than half a period after they were due
};

/// The host clock as a player sees it, so that a test can move the time. Any thread.
class PlayerTime {
  public:
    virtual ~PlayerTime() = default;

    virtual base::HostTime now() = 0;
    /// Returns at `deadline`, or earlier when `wakeUp` is called or a stop is asked for.
    virtual void waitUntil(base::HostTime deadline, const std::stop_token& stop) = 0;
    virtual void wakeUp() = 0;
};
std::unique_ptr<PlayerTime> hostPlayerTime();

/// Runs a task on the main thread, later. Any thread.
using OnMain = std::function<void(std::function<void()>)>;

enum class PlayerStatus { opening, ready, failed };

/// What a player needs around it.
struct PlayerServices {
    OnMain onMain;
    std::unique_ptr<PlayerTime> time;
    std::unique_ptr<PlayerSound> sound; ///< none: silent
    /// Called on the player's thread for every picture; must return at once.
    std::function<void(PlayerPicture)> show;
};

} // namespace vantro::media::player
