#include "base/HostClock.h"
#include "media/Sound.h"
#include "media/pulse/PulseSound.h"
#include "support/Eventually.h"
#include "support/Ffmpeg.h"
#include "support/SoundServer.h"

#include <algorithm>
#include <cmath>
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
    const auto sound = makePulseSound(wholeSound(movieOf(folder, "0.5*sin(2*PI*440*t)", 30)));
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

TEST_P(PulseSound, jumpsWithoutAHoleAndWithoutASampleOfWhatWasCut) {
    SoundServer server(GetParam());
    server.start();
    // 440 Hz, cut out: 1 kHz, then 1500 Hz.
    const auto sound = makePulseSound(
        wholeSound(movieOf(folder, "0.5*sin(2*PI*(440+560*gte(t,2)+500*gte(t,3))*t)", 8)));
    const struct {
        const char* what;
        double rate;
        bool isLate; ///< planned while playing, in place of another
    } cases[]{{"planned from the start", 1, false},
              {"planned while playing", 1, true},
              {"at twice the rate", 2, false}};
    for (const auto& [what, rate, isLate] : cases) {
        const player::PlannedJump jump{at(2), at(3), rate};
        const MonitorRecorder monitor(GetParam());
        if (isLate)
            sound->play(at(1), rate, player::PlannedJump{at(4), at(1), 1});
        else
            sound->play(at(1), rate, jump);
        monitor.hear(0.3);
        if (isLate)
            sound->planJump(jump);
        bool wasInTheCut = false;
        ASSERT_TRUE(eventually([&] {
            const auto reading = sound->reading();
            wasInTheCut =
                wasInTheCut || (reading && reading->time > at(2) && reading->time < at(3));
            return reading && reading->time >= at(3.5);
        })) << what;
        EXPECT_FALSE(wasInTheCut) << what;
        sound->pause();
        monitor.hear(0.2);
        const auto heard = monitor.sound();
        const double start = beginning(heard);
        const double place = start + 1 / rate;
        EXPECT_GT(toneAmplitude(heard, 440, start + 0.05, place - 0.01), 0.4) << what;
        EXPECT_GT(toneAmplitude(heard, 1500, place + 0.01, place + 0.2), 0.35) << what;
        for (double from = place - 0.1; from < place + 0.1; from += 0.005)
            EXPECT_LT(toneAmplitude(heard, 1000, from, from + 0.02), 0.2) << what << from - place;
        // Elsewhere a busy machine may starve the server.
        EXPECT_LT(longestHole(heard, place - 0.05, place + 0.05), 0.004) << what;
    }
}

TEST_P(PulseSound, isHeardSoonElsewhereLouderMutedAndNotAtAll) {
    SoundServer server(GetParam(), 44'100);
    server.start();
    const auto movie = movieOf(folder, "0.25*sin(2*PI*440*t)", 8,
                               "-f lavfi -i \"aevalsrc='0.25*sin(2*PI*1000*t)':s=48000:d=8\" "
                               "-map 0:a -map 1:a");
    const auto sound = makePulseSound(wholeSound(movie));
    const MonitorRecorder monitor(GetParam());
    sound->play(at(0), 1, {});
    // Waiting, for a server that a busy machine starves plays holes.
    const auto expect = [&](double first, double second, const char* what) {
        EXPECT_TRUE(eventually([&] {
            monitor.hear(0.2);
            const auto heard = monitor.sound();
            const double end = secondsOf(heard);
            return std::abs(toneAmplitude(heard, 440, end - 0.1, end) - first) < 0.03 &&
                   std::abs(toneAmplitude(heard, 1000, end - 0.1, end) - second) < 0.03;
        })) << what;
    };
    monitor.hear(0.3);
    expect(0.25, 0.25, "both tracks");
    sound->setMix({{.volume = 2}, {.volume = 0}});
    expect(0.5, 0, "their volumes");
    sound->setMuted(true);
    expect(0, 0, "muted");
    EXPECT_TRUE(sound->reading()) << "muted, the clock goes on";
    sound->setMuted(false);
    expect(0.5, 0, "heard again");
    sound->pause();
    expect(0, 0, "paused");
    const auto steepest = [&] {
        const auto before = monitor.sound().size();
        sound->play(at(1.0), 1, {});
        monitor.hear(0.2);
        sound->setMuted(true);
        monitor.hear(0.1);
        sound->setMuted(false);
        monitor.hear(0.1);
        sound->play(at(3.3), 1, {});
        monitor.hear(0.2);
        sound->pause();
        monitor.hear(0.2);
        const auto heard = monitor.sound();
        float step = 0;
        for (std::size_t i = before + 2; i < heard.size(); ++i)
            step = std::max(step, std::abs(heard[i] - heard[i - 2]));
        return step;
    };
    EXPECT_TRUE(steepest() < 0.1F || steepest() < 0.1F || steepest() < 0.1F) << "it clicks";
}

TEST_P(PulseSound, goesOnWhereItWouldBeWhenTheServerComes) {
    SoundServer server(GetParam());
    const auto sound =
        makePulseSound(wholeSound(movieOf(folder, "0.5*sin(2*PI*(440+560*gte(t,1))*t)", 60)));
    const auto began = base::hostNow();
    sound->play(at(0), 1, {});
    const auto isWhereItWouldBe = [&] {
        const auto reading = sound->reading();
        if (!reading)
            return false;
        EXPECT_NEAR(reading->time.seconds(), base::inSeconds(reading->at - began), 0.3);
        return true;
    };
    EXPECT_FALSE(sound->reading()) << "without a server there is no clock";
    const auto expectIsHeard = [&](const char* what) {
        ASSERT_TRUE(eventually(isWhereItWouldBe)) << what;
        const MonitorRecorder monitor(GetParam());
        EXPECT_TRUE(eventually([&] {
            monitor.hear(0.2);
            const auto heard = monitor.sound();
            return toneAmplitude(heard, 1000, secondsOf(heard) - 0.1, secondsOf(heard)) > 0.4;
        })) << what;
    };
    for (const char* what : {"a server appears", "another after it has crashed"}) {
        server.start();
        expectIsHeard(what);
        server.crash();
        EXPECT_TRUE(eventually([&] { return !sound->reading(); })) << what;
    }
    server.start();
    expectIsHeard("a third one");
    server.removeDevice(); // PipeWire's time goes on without, PulseAudio's stands still
    server.addDevice();
    expectIsHeard("its device has gone, and another come");
}

TEST_P(PulseSound, isSilentWhereTheMovieIsDamagedOrGone) {
    SoundServer server(GetParam());
    server.start();
    const auto movie = movieOf(folder, "0.5*sin(2*PI*440*t)", 20);
    const auto composition = wholeSound(movie);
    std::filesystem::resize_file(movie, std::filesystem::file_size(movie) / 2);
    const auto damaged = makePulseSound(composition);
    damaged->play(at(9.5), 1, {});
    const MonitorRecorder monitor(GetParam());
    EXPECT_TRUE(eventually([&] {
        const auto reading = damaged->reading();
        return !reading || reading->time > at(10.5);
    }));
    std::filesystem::remove(movie);
    const auto lost = makePulseSound(composition);
    lost->play(at(1), 1, {});
    EXPECT_TRUE(eventually([&] { return lost->reading().has_value(); })) << "silent, it plays on";
    monitor.hear(0.2);
    const auto heard = monitor.sound();
    EXPECT_GT(longestHole(heard, secondsOf(heard) - 0.2, secondsOf(heard)), 0.19);
}

TEST_P(PulseSound, tellsWhenEachClickIsHeard) {
    SoundServer server(GetParam());
    server.start();
    const auto sound = makePulseSound(
        wholeSound(movieOf(folder, "0.8*lt(mod(t+0.1,0.2),0.002)*sin(2*PI*2000*t)", 9)));
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
    const double median = errors[errors.size() / 2];
    const double rarelyMore = errors[errors.size() * 4 / 5]; // the machine may swallow a click
    EXPECT_LT(std::abs(median), 10);
    EXPECT_LT(std::abs(rarelyMore), 20) << median;
}

} // namespace
} // namespace vantro::media::pulse
