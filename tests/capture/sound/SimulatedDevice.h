#pragma once

#include "capture/sound/SteadySound.h"
#include "media/values/AudioBuffer.h"

#include <chrono>
#include <cmath>
#include <functional>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace vantro::capture::sound {

using namespace std::chrono_literals;
using media::mixing::sampleRate;

inline constexpr base::HostTime zero{std::chrono::hours(5)};

inline base::HostTime at(double seconds) {
    return zero + base::HostDuration(std::llround(seconds * 1e9));
}

/// A device whose clock the test moves. It begins to record at host time 0 and sounds as
/// `sounding` says at the host's times; what is said of its times is late at random.
class Device {
  public:
    explicit Device(double ppm, std::function<float(double)> sounding)
        : m_rate(sampleRate * (1 + ppm / 1e6)), m_sounding(std::move(sounding)) {}

    /// It records in pieces up to a time, and what it delivers then arrives.
    void runUpTo(double seconds) {
        for (; m_now < seconds; m_now += piece) {
            if (m_now < m_stalledUpTo)
                continue;
            deliver(m_now);
        }
    }
    /// It delivers nothing before that time, and then all at once.
    void stallUpTo(double seconds) { m_stalledUpTo = seconds; }
    /// What it records up to then is lost.
    void loseUpTo(double seconds) { m_lost = seconds * m_rate - static_cast<double>(m_recorded); }
    /// Another one takes its place, recording from then on.
    void replacedAt(double seconds) {
        m_sound.interrupted();
        m_begins = m_now = seconds;
        m_recorded = 0;
    }
    void passTime(double upTo) {
        for (; m_now < upTo; m_now += piece)
            m_sound.passTime(at(m_now));
    }

    /// When something is heard after silence, seconds of the host's clock.
    std::vector<double> beginnings;
    bool isContinuous = true;
    double endsAt = -1; ///< the output, so far
    /// Interleaved stereo, as far as it is kept.
    std::vector<float> output;
    bool keepsOutput = true;

  private:
    static constexpr double piece = 0.04;

    void deliver(double now) {
        const auto end = static_cast<std::int64_t>((now - m_begins) * m_rate - m_lost);
        std::vector<float> samples;
        for (; m_recorded < end; ++m_recorded)
            samples.push_back(
                m_sounding(m_begins + (static_cast<double>(m_recorded) + m_lost) / m_rate));
        const double late = m_lateness(m_random);
        m_sound.timed(at(now), m_recorded,
                      at(m_begins + (static_cast<double>(m_recorded) + m_lost) / m_rate + late));
        m_sound.captured(at(now), samples);
    }

    void listen(double from, std::span<const float> stereo) {
        if (endsAt < 0)
            endsAt = from;
        isContinuous = isContinuous && std::abs(from - endsAt) < 1e-6;
        endsAt = from + static_cast<double>(stereo.size()) / 2 / sampleRate;
        for (std::size_t i = 0; i < stereo.size(); i += 2) {
            if (std::abs(stereo[i]) < 0.1F)
                continue;
            const double now = from + static_cast<double>(i) / 2 / sampleRate;
            if (now - std::exchange(m_heardAt, now) > 0.03)
                beginnings.push_back(now);
        }
        if (keepsOutput)
            output.insert(output.end(), stereo.begin(), stereo.end());
    }

    const double m_rate;
    const std::function<float(double)> m_sounding;
    double m_now = 0;
    double m_begins = 0;
    double m_stalledUpTo = 0;
    double m_lost = 0; ///< samples
    std::int64_t m_recorded = 0;
    std::mt19937 m_random{1};
    std::exponential_distribution<double> m_lateness{1 / 0.005};
    double m_heardAt = -1;
    SteadySound m_sound{1, [this](base::HostTime time, std::span<const float> stereo) {
                            listen(base::inSeconds(time - zero), stereo);
                        }};
};

/// A click of a millisecond every second, on the second.
inline float clicks(double seconds) {
    return seconds - std::floor(seconds) < 0.001 ? 1 : 0;
}

/// By how much each click is late, by its second.
inline std::map<int, double> lateness(const Device& device) {
    std::map<int, double> late;
    for (const double time : device.beginnings)
        late.emplace(static_cast<int>(std::lround(time)), time - std::round(time));
    return late;
}

/// A recording of that length keeps in step with the host clock, though its device is held up once
/// a minute.
inline void expectStepFor(int minutes, double ppm) {
    Device device(ppm, clicks);
    device.keepsOutput = false;
    for (int minute = 0; minute < minutes; ++minute) {
        device.runUpTo(60 * minute + 30);
        device.stallUpTo(60 * minute + 30.8);
        device.runUpTo(60 * minute + 60);
    }
    EXPECT_TRUE(device.isContinuous);
    const auto late = lateness(device);
    EXPECT_EQ(late.size(), 60 * minutes) << "one click a second, none twice";
    for (const auto& [second, seconds] : late)
        EXPECT_NEAR(seconds, 0, 0.005) << ppm << " ppm, second " << second;
}

} // namespace vantro::capture::sound
