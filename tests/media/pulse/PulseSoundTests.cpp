#include "base/HostClock.h"
#include "media/Sound.h"
#include "media/TestMovies.h"
#include "media/pulse/PulseSound.h"
#include "support/Eventually.h"
#include "support/SoundServer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace vantro::media::pulse {
namespace {

using namespace vantro::test;
using Kind = SoundServer::Kind;

MediaTime at(double seconds) {
    return MediaTime::fromSeconds(seconds);
}

/// The whole movie at its own speed, as the editor plays it.
Composition wholeOf(const std::filesystem::path& movie) {
    const auto asset = Asset::open(movie);
    Composition composition(asset);
    for (const auto& track : asset.tracks(MediaType::audio))
        composition.addTrack(MediaType::audio).insert({{}, asset.duration()}, track, {});
    return composition;
}

/// Sound by a formula of the time t, as a movie.
std::filesystem::path movieOf(const TemporaryFolder& folder, const std::string& wave,
                              double seconds, const std::string& rest = "") {
    const auto movie = folder / "sound.mov";
    runFfmpeg(fmt::format("-f lavfi -i \"aevalsrc='{}':s=48000:d={}\" {} -c:a pcm_s16le", wave,
                          seconds, rest),
              movie);
    return movie;
}

/// Where sound begins in a recording, seconds; its end where there is none.
double beginning(const std::vector<float>& sound, float audible = 0.05F) {
    std::size_t i = 0;
    while (i < sound.size() && std::abs(sound[i]) < audible)
        i += 2;
    return static_cast<double>(i) / 2 / mixing::sampleRate;
}

/// The longest stretch below the level between two times, seconds.
double longestHole(const std::vector<float>& sound, double from, double to, float audible = 0.02F) {
    std::size_t longest = 0;
    std::size_t quiet = 0;
    for (auto i = static_cast<std::size_t>(from * mixing::sampleRate);
         i < static_cast<std::size_t>(to * mixing::sampleRate); ++i) {
        quiet = std::abs(sound.at(i * 2)) < audible ? quiet + 1 : 0;
        longest = std::max(longest, quiet);
    }
    return static_cast<double>(longest) / mixing::sampleRate;
}

class PulseSound : public testing::TestWithParam<Kind> {
  protected:
    void SetUp() override {
        if (!SoundServer::isInstalled(GetParam()))
            GTEST_SKIP() << "its programs are not installed";
    }

    TemporaryFolder folder;
};

INSTANTIATE_TEST_SUITE_P(, PulseSound, testing::Values(Kind::pipewire, Kind::pulseaudio),
                         [](const auto& kind) {
                             return kind.param == Kind::pipewire ? "pipeWire" : "pulseAudio";
                         });

TEST_P(PulseSound, keepsThePitchAtEveryRateAndToldTimesGoByAtTheRate) {
    SoundServer server(GetParam());
    server.start();
    const auto sound = makePulseSound(wholeOf(movieOf(folder, "0.5*sin(2*PI*440*t)", 30)));
    for (const double rate : {1.0, 2.0, 0.5}) {
        const MonitorRecorder monitor(GetParam());
        sound->play(at(1), rate, {});
        ASSERT_TRUE(eventually([&] { return sound->reading().has_value(); }));
        const auto first = sound->reading();
        monitor.hear(1.2);
        const auto last = sound->reading();
        sound->pause();
        const auto heard = monitor.sound();
        const double start = beginning(heard);
        EXPECT_NEAR(pitch(heard, start + 0.1, start + 0.9), 440, 4) << rate;
        EXPECT_NEAR(
            toneAmplitude(heard, pitch(heard, start + 0.1, start + 0.9), start + 0.1, start + 0.3),
            0.5, 0.1)
            << rate;
        ASSERT_TRUE(last);
        EXPECT_NEAR((last->time - first->time).seconds() / base::inSeconds(last->at - first->at),
                    rate, 0.03 * rate);
        ASSERT_TRUE(eventually([&] {
            monitor.hear(0.05);
            const auto now = monitor.sound();
            const double end = secondsOf(now);
            return longestHole(now, end - 0.05, end) > 0.049;
        })) << "goes on while paused";
    }
}

TEST_P(PulseSound, tellsWhenEachClickIsHeard) {
    SoundServer server(GetParam());
    server.start();
    const auto sound = makePulseSound(
        wholeOf(movieOf(folder, "0.8*lt(mod(t+0.1,0.2),0.002)*sin(2*PI*2000*t)", 9)));
    const MonitorRecorder monitor(GetParam());
    sound->play(at(0), 1, {});
    std::vector<player::SoundReading> told;
    ASSERT_TRUE(eventually([&] {
        if (const auto reading = sound->reading()) {
            EXPECT_TRUE(told.empty() || reading->time >= told.back().time);
            told.push_back(*reading);
        }
        return !told.empty() && told.back().time >= at(6);
    }));
    const auto heard = monitor.sound();
    std::vector<double> errors;
    for (int click = 2; click < 28; ++click) {
        const double item = 0.1 + click * 0.2;
        const auto reading = std::ranges::find_if(
            told, [=](const auto& each) { return each.time.seconds() >= item; });
        const double toldAt =
            base::inSeconds(reading->at.time_since_epoch()) - (reading->time.seconds() - item);
        double nearest = 1;
        for (const double time : beepTimes(heard)) {
            const double error =
                toldAt -
                monitor.timeOf(static_cast<std::size_t>(std::lround(time * mixing::sampleRate)));
            if (std::abs(error) < std::abs(nearest))
                nearest = error;
        }
        errors.push_back(nearest * 1000);
    }
    std::ranges::sort(errors, {}, [](double error) { return std::abs(error); });
    fmt::print("milliseconds off: median {:.2f}, worst {:.2f}\n", errors[errors.size() / 2],
               errors.back());
    EXPECT_LT(std::abs(errors[errors.size() / 2]), 5);
    EXPECT_LT(std::abs(errors.back()), 15);
}

} // namespace
} // namespace vantro::media::pulse
