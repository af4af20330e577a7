#include "media/sound/OnsetFinder.h"
#include "media/values/AudioBuffer.h"

#include <cmath>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

namespace vantro::media {
namespace {

using Wave = std::function<double(double seconds)>;

/// The onsets of three seconds of a wave, in seconds.
std::vector<double> onsetsOf(const Wave& wave) {
    sound::OnsetFinder finder([&wave](std::int64_t position, std::span<float> samples) {
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const auto at = position + static_cast<std::int64_t>(i) / mixing::channelCount;
            samples[i] = static_cast<float>(wave(static_cast<double>(at) / mixing::sampleRate));
        }
    });
    std::vector<double> onsets;
    constexpr std::int64_t end = std::int64_t{3} * mixing::sampleRate;
    auto onset = finder.firstBetween(0, end);
    while (onset) {
        onsets.push_back(static_cast<double>(*onset) / mixing::sampleRate);
        onset = finder.firstBetween(*onset + 1, end);
    }
    return onsets;
}

double tone(double frequency, double t) {
    return std::sin(2 * std::numbers::pi * frequency * t);
}

TEST(OnsetFinder, takesNothingThatSoundsOnForABeginning) {
    for (const double frequency : {25.0, 55.0, 110.0, 1000.0})
        EXPECT_TRUE(onsetsOf([=](double t) { return 0.5 * tone(frequency, t); }).empty())
            << frequency;
    // A voice: each of its pulses rings out long before the next one comes.
    for (const double pulses : {60.0, 100.0, 200.0})
        EXPECT_TRUE(onsetsOf([=](double t) {
                        const double since = std::fmod(t, 1 / pulses);
                        return 0.5 * tone(700, since) * std::exp(-400 * since);
                    }).empty())
            << pulses;
    EXPECT_TRUE(onsetsOf([](double t) {
                    return 0.4 * tone(440, t) * (1 + 0.9 * tone(6, t));
                }).empty()); // tremolo
    EXPECT_TRUE(onsetsOf([](double) { return 0.0; }).empty());
}

} // namespace
} // namespace vantro::media
