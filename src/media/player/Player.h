#pragma once

#include "base/HostClock.h"
#include "media/Composition.h"
#include "media/VideoComposition.h"
#include "media/player/PlayerControl.h"
#include "media/player/PlayerSound.h"

#include <cstdint>
#include <memory>
#include <stop_token>
#include <string>

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

/// Plays a composition: pictures composed and handed out when they are due, sound beside them.
///
/// Where sound is heard, its device is the clock, else CLOCK_MONOTONIC. Pictures that are late are
/// skipped, never the one that answers a seek. Thread-safety: main thread; decoding and composing
/// happen on threads of the player's own.
class Player : public PlayerControl {
  public:
    enum class Status { opening, ready, failed };

    /// The nearest rate that can be played; 0 stays.
    static double playableRate(double rate);

    struct Services {
        OnMain onMain;
        std::unique_ptr<PlayerTime> time;
        std::unique_ptr<PlayerSound> sound; ///< none: silent
        /// Called on the player's thread for every picture; must return at once.
        std::function<void(PlayerPicture)> show;
    };

    Player(PlayerItem item, Services services);
    ~Player() override;

    double rate() const override;
    void setRate(double rate) override;
    MediaTime currentTime() const override;
    std::optional<MediaTime> duration() const override;
    void seek(MediaTime to, MediaTime tolerance, std::function<void(bool finished)> done) override;
    void planJump(std::optional<PlannedJump> jump) override;
    Observation observeTime(MediaTime interval, std::function<void(MediaTime)> observer) override;
    Observation observeRate(std::function<void()> observer) override;
    Observation observeDuration(std::function<void()> observer) override;
    Observation observeEnd(std::function<void()> observer) override;
    Observation observeStatus(std::function<void()> observer);

    Status status() const;
    /// Why the status is failed: one sentence.
    std::string problem() const;

    /// Another size, scale or compositor for the pictures from now on; redraws the current one.
    void setVideo(VideoComposition video);
    /// Draws the current picture anew, because what the compositor draws has changed. The newest
    /// request is always the next picture; position and rate stay.
    void refresh();
    /// What pictures are fitted to, device pixels; without one they keep the video's size.
    void setOutputSize(int width, int height);
    void setVolumes(std::vector<float> volumes);
    void setMuted(bool muted);

    PlayerCounts counts() const;

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::media::player
