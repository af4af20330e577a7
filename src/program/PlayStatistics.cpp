#include "program/PlayStatistics.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantro::program {
namespace {

using media::TrackMix;
using media::player::PlannedJump;
using media::player::PlayerPicture;
using media::player::PlayerSound;
using media::player::SoundReading;

constexpr std::size_t mostOffsets = 1 << 20; // some hours; later ones are left out
/// Picture and sound this far apart, in seconds, stand on two sides of a jump.
constexpr double acrossAJump = 0.5;

} // namespace

class HeardSound::Listener : public PlayerSound {
  public:
    Listener(HeardSound& owner, std::unique_ptr<PlayerSound> sound)
        : m_owner(owner), m_sound(std::move(sound)) {}

    void play(media::MediaTime from, double rate, std::optional<PlannedJump> jump) override {
        m_owner.m_heard.with([rate](Heard& heard) { heard = {.reading = {}, .rate = rate}; });
        m_sound->play(from, rate, jump);
    }
    void planJump(std::optional<PlannedJump> jump) override { m_sound->planJump(jump); }
    void pause() override {
        m_owner.m_heard.with([](Heard& heard) { heard.reading.reset(); });
        m_sound->pause();
    }
    void setMix(std::vector<TrackMix> mix) override { m_sound->setMix(std::move(mix)); }
    void setMuted(bool muted) override { m_sound->setMuted(muted); }
    bool hasDevice() const override { return m_sound->hasDevice(); }
    std::optional<SoundReading> reading() const override {
        const auto newest = m_sound->reading();
        m_owner.m_heard.with([&newest](Heard& heard) { heard.reading = newest; });
        return newest;
    }

  private:
    HeardSound& m_owner;
    std::unique_ptr<PlayerSound> m_sound;
};

std::unique_ptr<PlayerSound> HeardSound::listenTo(std::unique_ptr<PlayerSound> sound) {
    return sound ? std::make_unique<Listener>(*this, std::move(sound)) : nullptr;
}

std::optional<double> HeardSound::timeAt(base::HostTime at) const {
    const auto heard = m_heard.with([](const Heard& value) { return value; });
    if (!heard.reading)
        return {};
    return heard.reading->time.seconds() + base::inSeconds(at - heard.reading->at) * heard.rate;
}

PlayStatistics::PlayStatistics(base::HostDuration period, const HeardSound& sound)
    : m_period(period), m_sound(sound) {}

void PlayStatistics::begin() {
    m_counts.with([](Counts& counts) {
        counts = {};
        counts.began = base::hostNow();
    });
}

void PlayStatistics::pictureReplaced(const PlayerPicture&) {
    m_counts.with([](Counts& counts) { ++counts.dropped; });
}

void PlayStatistics::pictureShown(const PlayerPicture& picture, base::HostTime at) {
    const auto heard = m_sound.timeAt(at);
    m_counts.with([&](Counts& counts) {
        if (at - picture.due > m_period) {
            ++counts.dropped;
            return;
        }
        ++counts.shown;
        if (at - picture.due > m_period / 2)
            ++counts.late;
        const double offset = heard ? std::abs(*heard - picture.time.seconds()) : acrossAJump;
        if (offset < acrossAJump && counts.offsets.size() < mostOffsets)
            counts.offsets.push_back(offset);
    });
}

app::cli::PlayReport PlayStatistics::report(std::uint64_t skipped) const {
    auto counts = m_counts.with([](const Counts& value) { return value; });
    app::cli::PlayReport report;
    report.shown = counts.shown;
    report.dropped = counts.dropped + skipped;
    report.late = counts.late;
    if (counts.began)
        report.seconds = base::inSeconds(base::hostNow() - *counts.began);
    if (!counts.offsets.empty()) {
        const auto most =
            counts.offsets.begin() + static_cast<std::ptrdiff_t>(counts.offsets.size() * 95 / 100);
        std::ranges::nth_element(counts.offsets, most);
        report.soundOffset = *most;
    }
    return report;
}

} // namespace vantro::program
