#include "media/pulse/PulseSound.h"

#include "media/pulse/PulseDevice.h"
#include "media/pulse/SoundFeed.h"
#include "media/pulse/SoundQueue.h"

#include <algorithm>

namespace vantro::media::pulse {
namespace {

std::size_t soundTracks(const Composition& composition) {
    return static_cast<std::size_t>(
        std::ranges::count(composition.tracks(), MediaType::audio, &CompositionTrack::type));
}

class PulseSound : public player::PlayerSound {
  public:
    explicit PulseSound(const Composition& composition)
        : m_queue(soundTracks(composition), composition.duration())
        , m_feed(composition, m_queue)
        , m_device(m_queue) {}

    void play(MediaTime from, double rate, std::optional<player::PlannedJump> jump) override {
        m_queue.play(from, rate, jump, base::hostNow());
        m_device.wakeUp();
    }
    void planJump(std::optional<player::PlannedJump> jump) override {
        m_queue.planJump(jump, base::hostNow());
    }
    void pause() override { m_queue.pause(); }
    void setMix(std::vector<TrackMix> mix) override { m_queue.setMix(mix); }
    void setMuted(bool muted) override { m_queue.setMuted(muted); }
    bool hasDevice() const override { return m_device.isThere(); }
    std::optional<player::SoundReading> reading() const override {
        return m_queue.reading(base::hostNow());
    }

  private:
    mutable SoundQueue m_queue;
    SoundFeed m_feed;
    PulseDevice m_device;
};

/// Of a composition that has no sound.
class NoSound : public player::PlayerSound {
  public:
    void play(MediaTime, double, std::optional<player::PlannedJump>) override {}
    void planJump(std::optional<player::PlannedJump>) override {}
    void pause() override {}
    void setMix(std::vector<TrackMix>) override {}
    void setMuted(bool) override {}
    bool hasDevice() const override { return false; }
    std::optional<player::SoundReading> reading() const override { return {}; }
};

} // namespace

std::unique_ptr<player::PlayerSound> makePulseSound(const Composition& composition) {
    if (soundTracks(composition) == 0)
        return std::make_unique<NoSound>();
    return std::make_unique<PulseSound>(composition);
}

} // namespace vantro::media::pulse
