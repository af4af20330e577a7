#pragma once

#include "media/values/MediaTime.h"

#include <functional>
#include <optional>
#include <utility>

namespace vantro::media::player {

/// Keeps an observer registered until it is destroyed. Main thread.
class Observation {
  public:
    Observation() = default;
    explicit Observation(std::function<void()> end) : m_end(std::move(end)) {}
    Observation(Observation&& other) noexcept : m_end(std::exchange(other.m_end, nullptr)) {}
    Observation& operator=(Observation&& other) noexcept {
        std::swap(m_end, other.m_end);
        return *this;
    }
    ~Observation() {
        if (m_end)
            m_end();
    }

  private:
    std::function<void()> m_end;
};

/// What playing does by itself when it reaches `from`: goes on at `to`, at `rate`, with neither a
/// picture nor a sample of what lies between, and without a hole in the sound.
struct PlannedJump {
    MediaTime from;
    MediaTime to;
    double rate = 1;
    bool operator==(const PlannedJump&) const = default;
};

/// What observes and drives a player knows of it. Times are the played item's own.
///
/// Thread-safety: the main thread calls, and is called back on. Observers may call the player.
class PlayerControl {
  public:
    virtual ~PlayerControl() = default;

    /// 0 while paused.
    virtual double rate() const = 0;
    /// 0 pauses. Rates that cannot be played (beyond 0.25 to 16) are kept as they were set, and
    /// played at the nearest that can.
    virtual void setRate(double rate) = 0;

    virtual MediaTime currentTime() const = 0;
    /// Nothing until the item is open.
    virtual std::optional<MediaTime> duration() const = 0;

    /// Goes to the picture of `to`, or to one at most `tolerance` away where that is sooner there.
    /// A later seek supersedes an earlier one. `done` is called once: with true when the picture is
    /// handed out, with false when the seek was superseded or nothing can be shown.
    virtual void seek(MediaTime to, MediaTime tolerance,
                      std::function<void(bool finished)> done) = 0;

    /// Replaces the planned jump. One that was made is forgotten, and the rate is the jump's then;
    /// a seek does not touch one that was not.
    virtual void planJump(std::optional<PlannedJump> jump) = 0;

    /// Called every `interval` of real time while playing, and whenever the time jumps.
    virtual Observation observeTime(MediaTime interval,
                                    std::function<void(MediaTime)> observer) = 0;
    virtual Observation observeRate(std::function<void()> observer) = 0;
    virtual Observation observeDuration(std::function<void()> observer) = 0;
    /// Called when playing reaches the item's end, after the rate has become 0.
    virtual Observation observeEnd(std::function<void()> observer) = 0;
};

} // namespace vantro::media::player
