#include "Sound.h"
#include "TestMovies.h"
#include "media/Asset.h"
#include "media/AssetWriter.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <limits>
#include <thread>

#include <gtest/gtest.h>

namespace vantro::media {
namespace {

using namespace vantro::test;

constexpr VideoSettings picture{.width = 64, .height = 36, .expectedFrameRate = 30};

void appendPictures(AssetWriter& writer, double start, int count) {
    for (int index = 0; index < count; ++index) {
        const auto time = MediaTime::fromSeconds(start, 48'000) + MediaTime{index, 30};
        if (!writer.append({paintedNumber(index, 64, 36), time, {1, 30}}))
            return;
    }
}

TEST(AudioWriter, placesLiveSoundByItsTimes) {
    const TemporaryFolder folder;
    auto video = picture;
    video.expectsRealTime = true;
    AssetWriter writer(folder / "recording.mov", FileType::quickTimeMovie, video,
                       {{.expectsRealTime = true}, {.expectsRealTime = true}});
    writer.startWriting();
    writer.startSession(MediaTime::fromSeconds(100, 48'000));
    ASSERT_TRUE(writer.append({paintedNumber(1, 64, 36), {100, 1}, {1, 30}}));
    // Begins before the session, overlaps by 50 ms, then leaves a gap of 550 ms.
    for (const double start : {99.8, 100.15, 101.1})
        ASSERT_TRUE(writer.appendAudio(0, tone(1000, start, start < 101 ? 0.4 : 0.2)));
    // The other track is silent until half a second later.
    ASSERT_TRUE(writer.appendAudio(1, tone(500, 100.5, 0.5)));
    writer.finish(MediaTime{102, 1});

    const auto sound = soundOf(folder / "recording.mov");
    const auto beeps = beepTimes(sound);
    ASSERT_EQ(beeps.size(), 2U);
    EXPECT_NEAR(beeps[0], 0, 0.005);
    EXPECT_NEAR(beeps[1], 1.1, 0.005);
    EXPECT_LT(toneAmplitude(sound, 500, 0.2, 0.48), 0.02);
    EXPECT_NEAR(toneAmplitude(sound, 1000, 0.05, 0.45), 0.5, 0.05);
    EXPECT_NEAR(toneAmplitude(sound, 500, 0.6, 0.9), 0.5, 0.05);
    EXPECT_LT(toneAmplitude(sound, 1000, 0.7, 1.0), 0.02);
}

TEST(AudioWriter, followsThePicturesAndEndsWithThem) {
    const TemporaryFolder folder;
    AssetWriter writer(folder / "out.mp4", FileType::mpeg4, picture, {AudioSettings{}});
    writer.startWriting();
    writer.startSession({});
    std::jthread sound([&writer] { // far more than the queue holds, and longer than the pictures
        for (int i = 0; i < 100; ++i)
            ASSERT_TRUE(writer.appendAudio(0, tone(1000, i * 0.1, 0.1)));
    });
    appendPictures(writer, 0, 60);
    writer.markVideoAsFinished(MediaTime{2, 1});
    sound.join();
    writer.finish();
    EXPECT_NEAR(secondsOf(soundOf(folder / "out.mp4")), 2.0, 0.002);
}

/// What no encoder takes.
AudioBuffer brokenSound(double start) {
    auto buffer = tone(1000, start, 0.1);
    std::ranges::fill(buffer.samples, std::numeric_limits<float>::quiet_NaN());
    return buffer;
}

TEST(AudioWriter, losesALiveTrackThatCannotBeEncodedButNotTheMovie) {
    const TemporaryFolder folder;
    for (const bool isLive : {true, false}) {
        auto video = picture;
        video.expectsRealTime = isLive;
        const auto movie = folder / (isLive ? "live.mov" : "film.mov");
        AssetWriter writer(movie, FileType::quickTimeMovie, video,
                           {{.expectsRealTime = isLive}, {.expectsRealTime = isLive}});
        EXPECT_FALSE(writer.appendAudio(0, tone(1000, 0, 0.1))); // nothing runs yet
        writer.startWriting();
        writer.startSession({});
        ASSERT_TRUE(writer.append({paintedNumber(1, 64, 36), {0, 30}, {1, 30}}));
        ASSERT_TRUE(writer.appendAudio(0, brokenSound(0)));
        ASSERT_TRUE(writer.appendAudio(1, tone(500, 0, 0.1)));
        if (isLive)
            EXPECT_NO_THROW(writer.finish(MediaTime{1, 1}));
        else
            EXPECT_THROW(writer.finish(MediaTime{1, 1}), MediaError);
    }
    EXPECT_EQ(Asset::open(folder / "live.mov").tracks(MediaType::video).size(), 1U);
    EXPECT_NEAR(Asset::open(folder / "live.mov").duration().seconds(), 1, 0.01);
}

} // namespace
} // namespace vantro::media
