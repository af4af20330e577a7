#pragma once

#include "media/AudioMixReader.h"
#include "media/values/AudioBuffer.h"

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <numbers>
#include <optional>
#include <vector>

namespace vantro::test {

/// A tone of amplitude 0.5 from `start` on, seconds, as sound of that time.
inline media::AudioBuffer tone(double frequency, double start, double length) {
    media::AudioBuffer buffer{media::MediaTime::fromSeconds(start, media::mixing::sampleRate), {}};
    const auto frames = std::lround(length * media::mixing::sampleRate);
    for (long i = 0; i < frames; ++i) {
        const double time = static_cast<double>(i) / media::mixing::sampleRate;
        const auto sample =
            static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * frequency * time));
        buffer.samples.insert(buffer.samples.end(), media::mixing::channelCount, sample);
    }
    return buffer;
}

/// Everything that a composition sounds like; interleaved stereo.
inline std::vector<float> allSound(const media::Composition& composition,
                                   const std::vector<media::TrackMix>& mix = {}) {
    media::AudioMixReader reader(composition, mix);
    std::vector<float> sound;
    while (const auto buffer = reader.copyNextBuffer())
        sound.insert(sound.end(), buffer->samples.begin(), buffer->samples.end());
    return sound;
}

/// All of a movie's sound at its own speed.
inline media::Composition wholeSound(const std::filesystem::path& movie) {
    const auto asset = media::Asset::open(movie);
    media::Composition composition(asset);
    for (const auto& track : asset.tracks(media::MediaType::audio))
        composition.addTrack(media::MediaType::audio).insert({{}, asset.duration()}, track, {});
    return composition;
}

/// A movie's sound from beginning to end, as a player gives it.
inline std::vector<float> soundOf(const std::filesystem::path& movie) {
    return allSound(wholeSound(movie));
}

inline double secondsOf(const std::vector<float>& sound) {
    return static_cast<double>(sound.size()) / media::mixing::channelCount /
           media::mixing::sampleRate;
}

/// The amplitude of a tone of this frequency on one channel between two times (Goertzel).
inline double toneAmplitude(const std::vector<float>& sound, double frequency, double from,
                            double to, std::size_t channel = 0) {
    const auto first = static_cast<std::size_t>(from * media::mixing::sampleRate);
    const auto last = static_cast<std::size_t>(to * media::mixing::sampleRate);
    const double step = 2 * std::numbers::pi * frequency / media::mixing::sampleRate;
    double real = 0;
    double imaginary = 0;
    for (auto i = first; i < last; ++i) {
        const double sample = sound.at(i * media::mixing::channelCount + channel);
        real += sample * std::cos(step * static_cast<double>(i));
        imaginary += sample * std::sin(step * static_cast<double>(i));
    }
    return 2 * std::hypot(real, imaginary) / static_cast<double>(last - first);
}

/// How loud it is between two times, by its mean square; 0 is that of a full-scale square wave.
inline double decibels(const std::vector<float>& sound, double from, double to) {
    double sum = 0;
    const auto first = static_cast<std::size_t>(from * media::mixing::sampleRate) * 2;
    const auto last = static_cast<std::size_t>(to * media::mixing::sampleRate) * 2;
    for (auto i = first; i < last; ++i)
        sum += static_cast<double>(sound.at(i)) * static_cast<double>(sound.at(i));
    return 10 * std::log10(sum / static_cast<double>(last - first) + 1e-20);
}

/// How often the left channel swings per second between two times.
inline double pitch(const std::vector<float>& sound, double from, double to) {
    const auto first = static_cast<std::size_t>(from * media::mixing::sampleRate);
    const auto last = static_cast<std::size_t>(to * media::mixing::sampleRate);
    int rising = 0;
    for (auto i = first; i + 1 < last; ++i)
        rising += sound.at(i * 2) < 0 && sound.at(i * 2 + 2) >= 0 ? 1 : 0;
    return rising / (to - from);
}

/// When sound begins after at least 30 ms of silence; seconds.
inline std::vector<double> beepTimes(const std::vector<float>& sound) {
    constexpr float audible = 0.1F;
    constexpr std::size_t silence = media::mixing::sampleRate * 30 / 1000;
    std::vector<double> times;
    std::size_t quiet = silence;
    for (std::size_t i = 0; i * 2 < sound.size(); ++i) {
        if (std::abs(sound[i * 2]) < audible) {
            ++quiet;
            continue;
        }
        if (quiet >= silence)
            times.push_back(static_cast<double>(i) / media::mixing::sampleRate);
        quiet = 0;
    }
    return times;
}

} // namespace vantro::test
