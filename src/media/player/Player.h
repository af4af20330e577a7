#pragma once

#include "media/player/PlayerControl.h"
#include "media/player/PlayerServices.h"
#include "media/proxy/ProxyMovie.h"

#include <memory>
#include <string>

namespace vantro::media::player {

/// Plays a composition: pictures composed and handed out when they are due, sound beside them.
///
/// Where sound is heard, its device is the clock, else CLOCK_MONOTONIC. Pictures that are late are
/// skipped, never the one that answers a seek. Thread-safety: main thread; decoding and composing
/// happen on threads of the player's own.
class Player : public PlayerControl {
  public:
    using Status = PlayerStatus;
    using Services = PlayerServices;

    Player(const PlayerItem& item, Services services);
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
    void setMix(std::vector<TrackMix> mix);
    void setMuted(bool muted);
    /// A small copy of the movie, whose pictures are seen where the movie's own take long to find;
    /// null for none. Playing shows the movie's own only.
    void setProxy(std::shared_ptr<proxy::ProxyMovie> proxy);

    PlayerCounts counts() const;

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::media::player
