// Sound played faster and slower with its pitch kept: ours beside rubberband's two engines, offline
// and live, over a voice, a chord with vibrato and clicks above a hum. Each is made by formula, at
// every speed, so that the ideal is known.
//   CPU      milliseconds of one core for a second of what is heard
//   samples  how many too many or too few come out
//   voice, chord   log-spectral distance from the ideal, decibels
//   onset    where clicks are heard, against where they belong: mean and worst, milliseconds
//   spread   of a click's energy, what is heard more than 2 ms before or 10 ms behind it, percent
// usage: stretch_bench [FOLDER]   a folder gets everything as raw stereo floats of 48 kHz

#include "media/sound/TimeStretcher.h"
#include "media/values/AudioBuffer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <numbers>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <rubberband/RubberBandStretcher.h>

namespace {

using namespace vantro;
using RubberBand::RubberBandStretcher;
using Sound = std::vector<float>; // mono

constexpr double rate = media::mixing::sampleRate;
constexpr double tau = 2 * std::numbers::pi;
constexpr int seconds = 10;

/// A voice gliding between 80 and 160 Hz and between two vowels, three syllables a second.
Sound voice(double speed) {
    Sound sound(static_cast<std::size_t>(seconds / speed * rate));
    constexpr std::array<std::array<double, 3>, 2> vowels{{{730, 1090, 2440}, {270, 2290, 3010}}};
    std::array<std::array<double, 2>, 3> memory{};
    double phase = 0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double s = static_cast<double>(i) / rate * speed;
        phase += (120 + 40 * std::sin(tau * 0.5 * s)) / rate;
        double excitation = 0;
        if (phase >= 1) {
            phase -= 1;
            excitation = 1;
        }
        const double vowel = 0.5 + 0.5 * std::sin(tau * 0.7 * s);
        double sum = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            const double frequency = vowels[0][k] * (1 - vowel) + vowels[1][k] * vowel;
            const double radius = std::exp(-std::numbers::pi * 90 / rate);
            const double out = excitation +
                               2 * radius * std::cos(tau * frequency / rate) * memory[k][0] -
                               radius * radius * memory[k][1];
            memory[k] = {out, memory[k][0]};
            sum += out;
        }
        const double syllable = 0.55 + 0.45 * std::sin(tau * 3 * s);
        sound[i] = static_cast<float>(0.05 * sum * syllable);
    }
    return sound;
}

/// Three notes with vibrato and their overtones.
Sound chord(double speed) {
    Sound sound(static_cast<std::size_t>(seconds / speed * rate));
    std::array<double, 3> phases{};
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double s = static_cast<double>(i) / rate * speed;
        for (std::size_t note = 0; note < 3; ++note) {
            constexpr std::array frequencies{220.0, 277.2, 329.6};
            const double vibrato = 1 + 0.006 * std::sin(tau * 5 * s + static_cast<double>(note));
            phases[note] += frequencies[note] * vibrato / rate;
            for (int overtone = 1; overtone <= 6; ++overtone)
                sound[i] +=
                    static_cast<float>(0.12 / overtone * std::sin(tau * overtone * phases[note]));
        }
    }
    return sound;
}

double clickAt(int click) {
    return 0.3 + 0.25 * click + 0.013 * (click % 7);
}
constexpr int clicks = 36;

/// Decaying bursts of 3 kHz above a soft hum.
Sound clicking(double speed) {
    Sound sound(static_cast<std::size_t>(seconds / speed * rate));
    for (std::size_t i = 0; i < sound.size(); ++i)
        sound[i] = static_cast<float>(0.005 * std::sin(tau * 150 * static_cast<double>(i) / rate));
    for (int click = 0; click < clicks; ++click) {
        const auto first = static_cast<std::size_t>(std::lround(clickAt(click) / speed * rate));
        for (std::size_t i = 0; i < 240; ++i) {
            const double t = static_cast<double>(i) / rate;
            sound[first + i] +=
                static_cast<float>(0.7 * std::exp(-t * 1200) * std::sin(tau * 3000 * t));
        }
    }
    return sound;
}

Sound ours(const Sound& source, double speed) {
    const auto length = std::llround(static_cast<double>(source.size()) / speed);
    const auto count = static_cast<std::int64_t>(source.size());
    media::sound::TimeStretcher stretcher(
        count, length, [&](std::int64_t position, std::span<float> samples) {
            for (std::size_t i = 0; i < samples.size(); ++i) {
                const auto at = position + static_cast<std::int64_t>(i / 2);
                samples[i] = at < 0 || at >= count ? 0 : source[static_cast<std::size_t>(at)];
            }
        });
    std::vector<float> stereo(static_cast<std::size_t>(length) * 2);
    stretcher.read(stereo);
    Sound sound(static_cast<std::size_t>(length));
    for (std::size_t i = 0; i < sound.size(); ++i)
        sound[i] = stereo[i * 2];
    return sound;
}

/// Stereo like ours, so that both do the same work.
Sound rubberband(const Sound& source, double speed, RubberBandStretcher::Options options) {
    RubberBandStretcher stretcher(media::mixing::sampleRate, 2,
                                  options | RubberBandStretcher::OptionThreadingNever |
                                      RubberBandStretcher::OptionChannelsTogether,
                                  1 / speed);
    const bool isLive = (options & RubberBandStretcher::OptionProcessRealTime) != 0;
    Sound padded(isLive ? stretcher.getPreferredStartPad() : 0);
    std::size_t drop = isLive ? stretcher.getStartDelay() : 0;
    padded.insert(padded.end(), source.begin(), source.end());
    const auto both = [&](std::size_t at) { return std::array{&padded[at], &padded[at]}; };
    if (!isLive)
        stretcher.study(both(0).data(), padded.size(), true);
    Sound sound;
    constexpr std::size_t block = 512;
    for (std::size_t at = 0; at < padded.size(); at += block) {
        const auto count = std::min(block, padded.size() - at);
        stretcher.process(both(at).data(), count, at + count == padded.size());
        while (stretcher.available() > 0) {
            const auto ready = static_cast<std::size_t>(stretcher.available());
            Sound left(ready);
            Sound right(ready);
            stretcher.retrieve(std::array{left.data(), right.data()}.data(), ready);
            const auto dropped = std::min(drop, ready);
            drop -= dropped;
            sound.insert(sound.end(), left.begin() + static_cast<std::ptrdiff_t>(dropped),
                         left.end());
        }
    }
    return sound;
}

/// Decibels of a windowed piece's spectrum; by the definition, up to 6 kHz.
std::vector<double> spectrum(const Sound& sound, std::size_t at, std::size_t length) {
    std::vector<double> levels;
    const auto top = static_cast<std::size_t>(6000 / rate * static_cast<double>(length));
    for (std::size_t bin = 1; bin < top; ++bin) {
        const std::complex<double> turn =
            std::polar(1.0, -tau * static_cast<double>(bin) / static_cast<double>(length));
        std::complex<double> rotor = 1;
        std::complex<double> sum = 0;
        for (std::size_t i = 0; i < length; ++i, rotor *= turn) {
            const double window =
                0.5 - 0.5 * std::cos(tau * static_cast<double>(i) / static_cast<double>(length));
            sum += rotor * (window * sound[at + i]);
        }
        levels.push_back(20 * std::log10(std::abs(sum) * 4 / static_cast<double>(length) + 1e-9));
    }
    return levels;
}

/// Where the ideal is within 50 dB of its loudest.
double spectralDistance(const Sound& sound, const Sound& ideal, std::size_t window) {
    double sum = 0;
    double count = 0;
    for (std::size_t at = 24'000; at + window + 24'000 < std::min(sound.size(), ideal.size());
         at += 14401) {
        const auto a = spectrum(sound, at, window);
        const auto b = spectrum(ideal, at, window);
        const double loudest = std::ranges::max(b);
        for (std::size_t i = 0; i < a.size(); ++i)
            if (b[i] > loudest - 50) {
                sum += std::pow(std::max(a[i], loudest - 60) - b[i], 2);
                ++count;
            }
    }
    return std::sqrt(sum / count);
}

struct Transients {
    double mean = 0;
    double worst = 0;
    double spread = 0;
};

Transients transients(const Sound& sound, double speed) {
    Transients result;
    for (int click = 2; click < clicks - 2; ++click) {
        const auto place = static_cast<std::ptrdiff_t>(clickAt(click) / speed * rate);
        constexpr std::ptrdiff_t around = 960; // up to the next click at four times the speed
        float peak = 0;
        for (auto i = place - around; i < place + around; ++i)
            peak = std::max(peak, std::abs(sound[static_cast<std::size_t>(i)]));
        auto onset = place - around;
        while (std::abs(sound[static_cast<std::size_t>(onset)]) < peak / 4)
            ++onset;
        double all = 0;
        double near = 0;
        for (auto i = place - around; i < place + around; ++i) {
            const double energy = std::pow(sound[static_cast<std::size_t>(i)], 2);
            all += energy;
            near += i >= place - 96 && i < place + 480 ? energy : 0;
        }
        const double error = std::abs(static_cast<double>(onset - place)) / rate * 1000;
        result.mean += error / (clicks - 4);
        result.worst = std::max(result.worst, error);
        result.spread += (1 - near / all) * 100 / (clicks - 4);
    }
    return result;
}

double cpuSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void write(const std::string& path, const Sound& sound) {
    std::ofstream file(path, std::ios::binary);
    for (const float sample : sound)
        for (int channel = 0; channel < 2; ++channel)
            file.write(reinterpret_cast<const char*>(&sample), sizeof sample);
}

} // namespace

int main(int argc, char** argv) {
    using Options = RubberBandStretcher::Option;
    const auto by = [](int options) {
        return [options](const Sound& source, double speed) {
            return rubberband(source, speed, options);
        };
    };
    const std::vector<std::pair<std::string, std::function<Sound(const Sound&, double)>>> all{
        {"ours", ours},
        {"R2", by(Options::OptionEngineFaster)},
        {"R2-live", by(Options::OptionEngineFaster | Options::OptionProcessRealTime)},
        {"R3", by(Options::OptionEngineFiner)},
        {"R3-live", by(Options::OptionEngineFiner | Options::OptionProcessRealTime)}};
    fmt::print("{:6} {:8} {:>8} {:>8} {:>7} {:>7} {:>7} {:>7} {:>7}\n", "speed", "", "CPU",
               "samples", "voice", "chord", "onset", "worst", "spread");
    const Sound speech = voice(1);
    const Sound music = chord(1);
    const Sound strokes = clicking(1);
    for (const double speed : {0.5, 0.75, 1.25, 1.5, 2.0, 4.0}) {
        const Sound idealSpeech = voice(speed);
        const Sound idealMusic = chord(speed);
        for (const auto& [name, stretch] : all) {
            const double before = cpuSeconds();
            const auto spoken = stretch(speech, speed);
            const double cpu = cpuSeconds() - before;
            const auto played = stretch(music, speed);
            const auto clicked = stretch(strokes, speed);
            const auto hits = transients(clicked, speed);
            fmt::print("{:<6} {:8} {:8.2f} {:+8} {:7.2f} {:7.2f} {:7.2f} {:7.2f} {:7.2f}\n", speed,
                       name, cpu * 1000 / (seconds / speed),
                       static_cast<long>(spoken.size()) - std::lround(seconds / speed * rate),
                       spectralDistance(spoken, idealSpeech, 512),
                       spectralDistance(played, idealMusic, 4096), hits.mean, hits.worst,
                       hits.spread);
            std::fflush(stdout);
            if (argc > 1)
                for (const auto& [kind, sound] :
                     {std::pair{"voice", &spoken}, std::pair{"chord", &played},
                      std::pair{"clicks", &clicked}})
                    write(fmt::format("{}/{}-{}-{}.f32", argv[1], kind, speed, name), *sound);
        }
    }
}
