#include "media/pulse/SoundMixer.h"

#include "media/values/AudioBuffer.h"

#include <algorithm>

namespace vantro::media::pulse {
namespace {

constexpr int channels = mixing::channelCount;
constexpr float glide = 1.0F / SoundMixer::fadeLength;

float towards(float value, float target) {
    return value + std::clamp(target - value, -glide, glide);
}

} // namespace

void SoundMixer::setMix(const std::vector<TrackMix>& mix) {
    const auto count = static_cast<std::ptrdiff_t>(std::min(mix.size(), m_volumes.size()));
    std::transform(mix.begin(), mix.begin() + count, m_volumes.begin(),
                   [](const TrackMix& track) { return track.volume; });
}

void SoundMixer::mix(const SoundBlock& block, std::int64_t first, std::span<float> mix) {
    for (std::size_t at = 0; at < mix.size(); at += channels) {
        std::array<float, 2> sum{};
        const auto from = static_cast<std::size_t>(first) * channels + at;
        for (std::size_t track = 0; track < block.tracks.size(); ++track) {
            m_gains[track] = towards(m_gains[track], m_muted ? 0 : m_volumes[track]);
            for (std::size_t channel = 0; channel < channels; ++channel)
                sum[channel] += m_gains[track] * block.tracks[track][from + channel];
        }
        m_level = towards(m_level, 1);
        for (std::size_t channel = 0; channel < channels; ++channel)
            mix[at + channel] = m_last[channel] = m_level * std::clamp(sum[channel], -1.0F, 1.0F);
    }
}

std::array<float, SoundMixer::fadeLength * 2> SoundMixer::lastDyingAway() const {
    std::array<float, fadeLength * channels> sound{};
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const auto frame = i / channels;
        sound[i] = m_last[i % channels] * (1 - static_cast<float>(frame + 1) * glide);
    }
    return sound;
}

void SoundMixer::riseFromSilence() {
    m_level = 0;
    m_last = {};
}

} // namespace vantro::media::pulse
