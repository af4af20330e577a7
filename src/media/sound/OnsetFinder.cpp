#include "media/sound/OnsetFinder.h"

#include "media/values/AudioBuffer.h"

#include <algorithm>
#include <cmath>

namespace vantro::media::sound {
namespace {

constexpr int channels = mixing::channelCount;
constexpr std::int64_t stepLength = mixing::sampleRate / 1000;
// Longer than a wave of any voice: within one the energy goes up and down without anything new.
constexpr std::size_t recentSteps = 20;
// Against the loudest step before. Less takes trembling for beginnings, more misses soft ones.
constexpr double suddenRise = 6;
constexpr double audible = 1e-5; // mean square, -50 dB below full scale
// Between two onsets; what follows sooner belongs to the same sound.
constexpr std::int64_t closest = mixing::sampleRate * 3 / 100;
// Of the loudest sample in its step; the onset is where this is reached.
constexpr float beginning = 0.25F;

float loudness(std::span<const float> sound, std::int64_t index) {
    const auto at = static_cast<std::size_t>(index) * channels;
    return std::max(std::abs(sound[at]), std::abs(sound[at + 1]));
}

} // namespace

OnsetFinder::OnsetFinder(SampleReader source)
    : m_source(std::move(source)), m_sound(stepLength * channels), m_recent(recentSteps) {}

std::optional<std::int64_t> OnsetFinder::firstBetween(std::int64_t from, std::int64_t to) {
    while (m_steps * stepLength < to)
        scanOn();
    std::erase_if(m_onsets, [from](std::int64_t onset) { return onset < from; });
    return m_onsets.empty() || m_onsets.front() >= to ? std::nullopt
                                                      : std::optional(m_onsets.front());
}

void OnsetFinder::scanOn() {
    const std::int64_t start = m_steps * stepLength;
    m_source(start, m_sound);
    double energy = 0;
    for (const float sample : m_sound)
        energy += static_cast<double>(sample) * sample;
    energy /= static_cast<double>(m_sound.size());
    if (isSudden(energy) && (!m_latest || start - *m_latest >= closest)) {
        float peak = 0;
        for (std::int64_t i = 0; i < stepLength; ++i)
            peak = std::max(peak, loudness(m_sound, i));
        std::int64_t first = 0;
        while (loudness(m_sound, first) < beginning * peak)
            ++first;
        m_latest = start + first;
        m_onsets.push_back(*m_latest);
    }
    m_recent[static_cast<std::size_t>(m_steps) % recentSteps] = energy;
    ++m_steps;
}

/// The very beginning of the sound is none: nothing is known of what came before.
bool OnsetFinder::isSudden(double energy) const {
    return m_steps >= static_cast<std::int64_t>(recentSteps) && energy > audible &&
           energy > suddenRise * std::ranges::max(m_recent);
}

} // namespace vantro::media::sound
