#include "media/Sound.h"
#include "support/Ffmpeg.h"
#include "support/TemporaryFolder.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace vantro::media {
namespace {

using namespace vantro::test;

/// One stretch of a source, with the rate at which it is played.
struct Stretch {
    int from; ///< 1/600 s
    int to;
    double speed = 1;
};

Composition composed(const std::filesystem::path& movie, const std::vector<Stretch>& stretches) {
    const auto asset = Asset::open(movie);
    Composition composition(asset);
    for (const auto& source : asset.tracks(MediaType::audio)) {
        auto& track = composition.addTrack(MediaType::audio);
        MediaTime at;
        for (const auto& [from, to, speed] : stretches) {
            const MediaTimeRange range{{from, 600}, {to - from, 600}};
            track.insert(range, source, at);
            const auto played = MediaTime::fromSeconds(range.duration.seconds() / speed);
            if (played != range.duration)
                track.scale({at, range.duration}, played);
            at = at + played;
        }
    }
    return composition;
}

/// A beep of 1 kHz in the first twentieth of every second.
std::string beeps(int seconds, const std::string& rest = "") {
    return "-f lavfi -i \"aevalsrc='0.5*sin(2*PI*1000*t)*lt(mod(t,1),0.05)':s=48000:d=" +
           std::to_string(seconds) + "\" " + rest;
}

std::string tone(int frequency, int seconds, const std::string& rest = "") {
    return "-f lavfi -i \"aevalsrc='0.5*sin(2*PI*" + std::to_string(frequency) +
           "*t)':s=48000:d=" + std::to_string(seconds) + "\" " + rest;
}

TEST(AudioMixReader, hearsEveryKindOfSourceAtItsLoudness) {
    const TemporaryFolder folder;
    const struct {
        const char* name;
        const char* coding;
    } kinds[]{{"mono.wav", "-ar 44100 -ac 1"},
              {"stereo.m4a", "-af pan='stereo|c0=c0|c1=c0' -c:a aac"},
              {"high.flac", "-af pan='stereo|c0=c0|c1=c0' -ar 96000 -sample_fmt s32"},
              {"low.mkv", "-ar 8000 -ac 1 -c:a pcm_u8"},
              {"opus.webm", "-af pan='stereo|c0=c0|c1=c0' -c:a libopus"}};
    for (const auto& [name, coding] : kinds) {
        runFfmpeg(tone(1000, 2, coding), folder / name);
        const auto sound = soundOf(folder / name);
        EXPECT_NEAR(secondsOf(sound), 2, 0.03) << name;
        for (const std::size_t channel : {0U, 1U})
            EXPECT_NEAR(toneAmplitude(sound, 1000, 0.2, 1.8, channel), 0.5, 0.03) << name;
    }
    // All six channels at once are loud, but do not clip: no overtones.
    runFfmpeg(tone(1000, 1, "-af \"pan=5.1|c0=c0|c1=c0|c2=c0|c3=c0|c4=c0|c5=c0\""),
              folder / "surround.wav");
    const auto surround = soundOf(folder / "surround.wav");
    EXPECT_GT(toneAmplitude(surround, 1000, 0.2, 0.8), 0.3);
    EXPECT_LT(toneAmplitude(surround, 3000, 0.2, 0.8), 0.01);
}

TEST(AudioMixReader, hearsBeepsWhereTheFileHasThem) {
    const TemporaryFolder folder;
    runFfmpeg(beeps(3, "-c:a pcm_s16le"), folder / "plain.mov");
    runFfmpeg(beeps(3, "-c:a aac"), folder / "primed.m4a");
    runFfmpeg("-f lavfi -i color=s=64x64:r=30:d=4 -itsoffset 0.4 " + beeps(3, "-c:a aac"),
              folder / "late.mp4");
    runFfmpeg(beeps(3, "-af \"asetpts='PTS+gte(N,24000)*0.25/TB'\" -c:a pcm_s16le"),
              folder / "gap.mkv");
    const struct {
        const char* name;
        std::vector<double> times;
    } expected[]{{"plain.mov", {0, 1, 2}},
                 {"primed.m4a", {0, 1, 2}},
                 {"late.mp4", {0.4, 1.4, 2.4}},
                 {"gap.mkv", {0, 1.25, 2.25}}};
    for (const auto& [name, times] : expected) {
        const auto heard = beepTimes(soundOf(folder / name));
        ASSERT_EQ(heard.size(), times.size()) << name;
        for (std::size_t i = 0; i < times.size(); ++i)
            EXPECT_NEAR(heard[i], times[i], 0.003) << name;
    }
}

TEST(AudioMixReader, keepsThePitchAndExactLengthAtEverySpeed) {
    const TemporaryFolder folder;
    runFfmpeg(tone(440, 20), folder / "tone.wav");
    for (const double speed : {0.25, 0.5, 0.75, 1.5, 2.0, 4.0, 16.0}) {
        const auto composition = composed(folder / "tone.wav", {{600, 600 * 17, speed}});
        const auto sound = allSound(composition);
        const double length = 16 / speed;
        EXPECT_EQ(sound.size(), composition.duration().rescaled(48'000).value * 2) << speed;
        EXPECT_NEAR(pitch(sound, 0.05, length - 0.05), 440, 4) << speed;
        EXPECT_NEAR(toneAmplitude(sound, pitch(sound, 0.05, length - 0.05), 0.1, 0.3), 0.5, 0.1)
            << speed;
    }
}

TEST(AudioMixReader, staysInStepOverFiveHundredSegments) {
    const TemporaryFolder folder;
    runFfmpeg(beeps(60), folder / "beeps.wav");
    std::vector<Stretch> stretches;
    double length = 0;
    for (int i = 0; i < 499; ++i) {
        // None of them holds a beep; lengths and speeds that no sample grid divides.
        const int from = i % 59 * 600 + 61 + i % 7;
        stretches.push_back({from, from + 97 + i % 11, i % 3 == 0 ? 1.7 : i % 3 == 1 ? 1 : 0.9});
        const auto& last = stretches.back();
        length += std::round((last.to - last.from) / last.speed) / 600;
    }
    stretches.push_back({59 * 600, 60 * 600, 1});
    const auto sound = allSound(composed(folder / "beeps.wav", stretches));
    EXPECT_EQ(sound.size(), static_cast<std::size_t>(std::lround((length + 1) * 48'000)) * 2);
    const auto heard = beepTimes(sound);
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_NEAR(heard.front(), length, 0.002);
}

TEST(AudioMixReader, beginsWhatIsSuddenOnTimeAndNotBeforeAtEverySpeed) {
    const TemporaryFolder folder;
    runFfmpeg("-f lavfi -i \"aevalsrc='0.5*sin(2*PI*1000*t)*lt(mod(t,1),0.05)"
              "+0.02*sin(2*PI*200*t)':s=48000:d=7\"",
              folder / "hum.wav");
    for (const double speed : {0.2, 0.5, 0.9, 1.5, 4.0}) {
        const auto sound = allSound(composed(folder / "hum.wav", {{300, 3900, speed}}));
        const auto heard = beepTimes(sound);
        ASSERT_EQ(heard.size(), 6U) << speed;
        for (int beep = 0; beep < 6; ++beep) {
            const double expected = (0.5 + beep) / speed;
            EXPECT_NEAR(heard[static_cast<std::size_t>(beep)], expected, 0.002) << speed;
            // Up to the beep its surroundings go on: neither a hole nor a foretaste.
            EXPECT_NEAR(toneAmplitude(sound, 200, expected - 0.025, expected - 0.005), 0.02, 0.006)
                << speed;
            EXPECT_LT(toneAmplitude(sound, 1000, expected - 0.025, expected - 0.002), 0.005)
                << speed;
        }
    }
}

TEST(AudioMixReader, cutsWithoutClicksAndJoinsWithoutASeam) {
    const TemporaryFolder folder;
    runFfmpeg(tone(100, 5), folder / "tone.wav");
    const auto steepest = [](const std::vector<float>& sound) {
        float step = 0;
        for (std::size_t i = 2; i < sound.size(); ++i)
            step = std::max(step, std::abs(sound[i] - sound[i - 2]));
        return step;
    };
    // The tone itself rises by 0.0065 a sample, a cut at its crest would jump by up to 1.
    const auto cut = allSound(composed(
        folder / "tone.wav", {{100, 603, 1}, {1201, 1802, 2}, {1804, 2102, 0.5}, {2402, 2703, 1}}));
    EXPECT_LT(steepest(cut), 0.02);
    const auto whole = allSound(composed(folder / "tone.wav", {{0, 1800, 1}}));
    const auto split = allSound(composed(folder / "tone.wav", {{0, 601, 1}, {601, 1800, 1}}));
    EXPECT_EQ(whole, split);
}

TEST(AudioMixReader, mixesAllTracksAndLimitsTheirSum) {
    const TemporaryFolder folder;
    const std::string two = "-map 0:a -map 1:a -c:a pcm_s16le";
    runFfmpeg(tone(440, 2) + tone(880, 2, two), folder / "two.mov");
    const auto mixed = soundOf(folder / "two.mov");
    for (const double frequency : {440.0, 880.0})
        EXPECT_NEAR(toneAmplitude(mixed, frequency, 0.5, 1.5), 0.5, 0.01) << frequency;
    runFfmpeg(tone(440, 1) + tone(440, 1,
                                  "-filter_complex \"[0]volume=1.8[a];[1]volume=1.8[b]\" "
                                  "-map [a] -map [b] -c:a pcm_s16le"),
              folder / "loud.mov");
    const auto loud = soundOf(folder / "loud.mov");
    EXPECT_LE(*std::ranges::max_element(loud), 1.0F);
    EXPECT_GE(*std::ranges::min_element(loud), -1.0F);
}

/// Noise of −50 dB with a tone from 4 s to 6 s and clicks at 3 s and 8 s.
std::string noisyRoom() {
    return "-f lavfi -i \"aevalsrc='0.0055*(random(0)-0.5)"
           "+0.3*sin(2*PI*1000*t)*between(t,4,6)"
           "+0.5*lt(abs(t-3-0.0002),0.0002)+0.5*lt(abs(t-8-0.0002),0.0002)':s=48000:d=10\" "
           "-c:a pcm_f32le";
}

TEST(AudioMixReader, takesNoiseAndVolumeOffATrackAndLeavesTheRestInItsPlace) {
    const TemporaryFolder folder;
    runFfmpeg(noisyRoom(), folder / "room.mov");
    const auto noisy = soundOf(folder / "room.mov");
    // Also where reading begins in the middle, and behind a jump.
    const std::pair<std::vector<Stretch>, double> films[]{
        {{{0, 6000}}, 0}, {{{1500, 6000}}, 2.5}, {{{0, 600}, {1650, 6000}}, 1.75}};
    for (const auto& [stretches, earlier] : films) {
        const auto film = composed(folder / "room.mov", stretches);
        const auto sound = allSound(film, {{.volume = 0.5, .noiseReduced = true}});
        EXPECT_EQ(sound.size(), film.duration().rescaled(48'000).value * 2);
        const auto clicks = beepTimes(sound);
        ASSERT_EQ(clicks.size(), 3U); // the tone begins, too
        const double expected[]{3, 4, 8};
        for (std::size_t i = 0; i < clicks.size(); ++i)
            EXPECT_NEAR(clicks[i], expected[i] - earlier, 0.001);
        const double before = toneAmplitude(noisy, 1000, 4.5, 5.5);
        const double after = 2 * toneAmplitude(sound, 1000, 4.5 - earlier, 5.5 - earlier);
        EXPECT_NEAR(20 * std::log10(after / before), 0, 1);
        const double quieter = 20 * std::log10(2);
        EXPECT_LT(decibels(sound, 6.5 - earlier, 7.5 - earlier) + quieter,
                  decibels(noisy, 6.5, 7.5) - 10);
    }
}

} // namespace
} // namespace vantro::media
