#include "capture/MovieFrames.h"
#include "capture/ScriptedPlatform.h"
#include "capture/session/CursorJournal.h"
#include "capture/session/RecordingSession.h"
#include "media/Sound.h"
#include "model/VantroError.h"
#include "support/Eventually.h"
#include "support/TemporaryFolder.h"

#include <random>
#include <thread>

#include <gmock/gmock.h>

namespace vantro::capture {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

/// A gray picture whose samples differ by less than `noise`.
std::shared_ptr<const media::PixelBuffer> flatPicture(std::uint8_t luma, unsigned noise = 1) {
    std::mt19937 random(1);
    auto picture = media::PixelBuffer::allocate(media::PixelFormat::i420, 320, 240);
    for (int plane = 0; plane < 3; ++plane)
        for (int y = 0; y < picture->planeHeight(plane); ++y)
            for (int x = 0; x < (plane == 0 ? 320 : 160); ++x)
                picture->mutableRow(plane, y)[x] =
                    static_cast<std::uint8_t>((plane == 0 ? luma : 128) + random() % noise);
    return picture;
}

class RecordingSessionTest : public testing::Test {
  protected:
    /// Records what the test's platform shows; the session owns the platform.
    std::unique_ptr<RecordingSession> makeSession(const RecordingRequest& request = {}) {
        return std::make_unique<RecordingSession>(
            request, [this] { return std::make_unique<test::ScriptedPlatform>(script); },
            std::make_unique<test::ScriptedSound>(script));
    }
    std::unique_ptr<RecordingSession> startedSession(const RecordingRequest& request = {}) {
        auto session = makeSession(request);
        EXPECT_TRUE(session->choose({}));
        session->start(movie);
        return session;
    }

    SampleDisposition deliver(std::shared_ptr<const media::PixelBuffer> picture,
                              FrameStatus status = FrameStatus::complete) {
        return script->output->screenSample(
            {.status = status, .presentationTime = base::hostNow(), .pixels = std::move(picture)});
    }

    /// What start throws.
    model::VantroError startFailure(const std::filesystem::path& output) {
        const auto session = makeSession();
        session->choose({});
        return failureOf([&] { session->start(output); });
    }
    static model::VantroError failureOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const model::VantroError& error) {
            return error;
        }
        throw std::logic_error("it succeeded");
    }

    test::TemporaryFolder folder;
    std::filesystem::path movie = folder.path() / "recording.mov";
    std::shared_ptr<test::StreamScript> script = std::make_shared<test::StreamScript>();
};

TEST_F(RecordingSessionTest, WritesOnlyCompleteFramesAndKeepsTheLastUntilTheStop) {
    const auto recorder = startedSession();
    for (const auto status : {FrameStatus::started, FrameStatus::idle, FrameStatus::blank})
        EXPECT_EQ(deliver(flatPicture(200), status), SampleDisposition::taken);
    deliver(flatPicture(60));
    const auto afterSecond = base::hostNow() + 100ms;
    ASSERT_TRUE(test::eventually([&] { return base::hostNow() > afterSecond; }));
    deliver(flatPicture(180));
    deliver(flatPicture(20), FrameStatus::suspended);
    const auto end = base::hostNow() + 100ms;
    ASSERT_TRUE(test::eventually([&] { return base::hostNow() > end; }));
    const auto metadata = recorder->stop();
    EXPECT_EQ(recorder->statistics().framesCaptured, 2);
    EXPECT_EQ(recorder->statistics().framesDropped, 0);

    const auto frames = test::framesOf(movie);
    ASSERT_GE(frames.size(), 2);
    EXPECT_LE(frames.size(), 3) << "a last picture that stood still may come once more";
    EXPECT_EQ(frames[0].presentationTime, media::MediaTime{});
    EXPECT_NEAR(frames[0].pixels->row(0, 100)[100], 60, 2);
    EXPECT_NEAR(frames[1].pixels->row(0, 100)[100], 180, 2);
    EXPECT_NEAR(frames.back().pixels->row(0, 100)[100], 180, 2);
    EXPECT_NEAR(frames[1].presentationTime.seconds(), 0.1, 0.05);
    const double length = media::Asset::open(movie).duration().seconds();
    EXPECT_NEAR(length, metadata.endTime, 0.002) << "the still end is part of the movie";
    EXPECT_LE(length, metadata.endTime);
    EXPECT_GE(length, frames[1].presentationTime.seconds() + 0.099);
}

TEST_F(RecordingSessionTest, LeavesNothingWithoutFrames) {
    const auto recorder = startedSession();
    deliver(nullptr, FrameStatus::idle);
    EXPECT_EQ(failureOf([&] { recorder->stop(); }).kind(),
              model::VantroError::Kind::noRecordingData);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(RecordingSessionTest, RefusesAndCountsFramesThatTheEncoderHasNotCaughtUpWith) {
    const auto recorder = startedSession();
    int refused = 0;
    constexpr int offered = 60;
    const auto picture = flatPicture(0, 256);
    for (int index = 0; index < offered; ++index)
        refused += deliver(picture) == SampleDisposition::refused ? 1 : 0;
    const auto statistics = recorder->statistics();
    EXPECT_GT(refused, 0) << "a burst without a pause outruns any encoder";
    EXPECT_EQ(statistics.framesDropped, refused);
    EXPECT_EQ(statistics.framesCaptured, offered - refused);
    EXPECT_EQ(statistics.condition, RecordingCondition::recording);
    recorder->stop();
}

TEST_F(RecordingSessionTest, AStartThatFailsTellsWhyAndLeavesNothing) {
    script->startFailure = "the stream is tired";
    EXPECT_EQ(startFailure(movie).description(),
              "Failed to start screen capture: the stream is tired");
    EXPECT_FALSE(std::filesystem::exists(movie));

    RecordingRequest elsewhere;
    elsewhere.displayID = 6;
    EXPECT_THROW(makeSession(elsewhere)->choose({}), model::VantroError);

    const auto error = startFailure(folder.path() / "missing" / "recording.mov");
    EXPECT_EQ(error.kind(), model::VantroError::Kind::assetWriterFailed);
    EXPECT_THAT(error.message(), HasSubstr("Failed to create writer"));
    EXPECT_THAT(error.message(), HasSubstr("No such file or directory"));
}

/// Sound of that time, all samples of one value.
media::AudioBuffer soundOf(base::HostTime from, base::HostDuration length, float value = 0.25F) {
    const auto frames = static_cast<std::size_t>(length / 1ms) * 48;
    return {.presentationTime = {from.time_since_epoch().count(), 1'000'000'000},
            .samples = std::vector<float>(2 * frames, value)};
}

RecordingRequest withSound() {
    RecordingRequest request;
    request.sources.systemSound = request.sources.microphone = true;
    return request;
}

/// From when to when a movie's sound is not silent, seconds.
std::vector<std::pair<double, double>> audibleParts(const std::filesystem::path& movie) {
    std::vector<std::pair<double, double>> parts;
    const auto sound = test::soundOf(movie);
    constexpr std::size_t step = 48; // a millisecond
    bool wasAudible = false;
    for (std::size_t i = 0; i + 2 * step <= sound.size(); i += 2 * step) {
        const bool isAudible = std::abs(sound[i]) > 0.1F;
        const double now = static_cast<double>(i) / 96'000;
        if (isAudible && !wasAudible)
            parts.emplace_back(now, now);
        if (isAudible)
            parts.back().second = now;
        wasAudible = isAudible;
    }
    return parts;
}

TEST_F(RecordingSessionTest, ASoundHasItsPlaceInTheMovieAndLastsAsLong) {
    const auto recorder = startedSession(withSound());
    const auto wait = [](base::HostTime time) {
        ASSERT_TRUE(test::eventually([&] { return base::hostNow() > time; }));
    };
    script->sound->sound(soundOf(base::hostNow() - 40ms, 40ms)); // before the movie
    const auto zero = base::hostNow();
    deliver(flatPicture(60));
    wait(zero + 500ms);
    script->sound->sound(soundOf(zero + 200ms, 100ms));
    script->sound->sound(soundOf(zero + 300ms, 200ms, 0)); // its device is silent
    recorder->pause();
    wait(zero + 700ms);
    recorder->resume();
    const auto paused = base::hostNow() - zero - 500ms; // nearly
    wait(zero + 900ms);
    script->sound->sound(soundOf(zero + 500ms + 60ms, 300ms)); // in part while it is paused
    script->sound->sound(soundOf(zero + 860ms, 40ms, 0));
    script->sound->sound(soundOf(zero + 10s, 100ms)); // mixed ahead, and not heard before the stop
    const auto metadata = recorder->stop();
    EXPECT_TRUE(metadata.hasMicrophoneAudio);
    EXPECT_FALSE(metadata.hasSystemAudio);
    EXPECT_THAT(recorder->statistics().lostSources,
                testing::ElementsAre("System audio: there are no loudspeakers"));
    const auto tracks = media::Asset::open(movie).tracks(media::MediaType::audio);
    ASSERT_EQ(tracks.size(), 1);
    EXPECT_EQ(tracks[0].timeRange.start, media::MediaTime{});
    // Sound that is out of step by less than 10 ms is left so: a hole would crackle.
    EXPECT_NEAR(tracks[0].timeRange.end().seconds(), metadata.endTime, 0.012);
    const auto parts = audibleParts(movie);
    ASSERT_EQ(parts.size(), 2);
    EXPECT_NEAR(parts[0].first, 0.2, 0.005);
    EXPECT_NEAR(parts[0].second, 0.3, 0.005);
    EXPECT_NEAR(parts[1].first, 0.5, 0.01) << "at the end of the pause";
    EXPECT_NEAR(parts[1].second, 0.86 - base::inSeconds(paused), 0.01);
    const auto sound = test::soundOf(movie);
    const auto seam = static_cast<std::size_t>(parts[1].first * 48'000) * 2;
    float steepest = 0;
    for (auto i = seam - 960; i < seam + 960; i += 2)
        steepest = std::max(steepest, std::abs(sound.at(i + 2) - sound.at(i)));
    EXPECT_LT(steepest, 0.02F) << "a cut would click";
}

TEST_F(RecordingSessionTest, ASoundThatCannotBeStartedOrEncodedDoesTheRecordingNoHarm) {
    for (const bool isStarted : {false, true}) {
        SCOPED_TRACE(isStarted);
        script->microphoneFailure = isStarted ? "" : "it is muted";
        const auto recorder = startedSession(withSound());
        const auto lost = [&] { return recorder->statistics().lostSources; };
        deliver(flatPicture(60));
        EXPECT_TRUE(test::eventually([&] {
            if (isStarted)
                script->sound->sound(soundOf(base::hostNow(), 40ms, NAN));
            return lost().size() > 1;
        }));
        deliver(flatPicture(90));
        recorder->stop();
        EXPECT_EQ(recorder->statistics().framesCaptured, 2);
        EXPECT_EQ(recorder->statistics().condition, RecordingCondition::recording);
        EXPECT_THAT(lost(),
                    testing::ElementsAre(HasSubstr(isStarted ? "Microphone: Encoding sound failed"
                                                             : "Microphone: it is muted"),
                                         "System audio: there are no loudspeakers"));
        EXPECT_GE(test::framesOf(movie).size(), 2);
    }
}

TEST_F(RecordingSessionTest, TellsHowLoudAMicrophoneIsAndWhenItHasBeenSilentForLong) {
    const auto recorder = startedSession(withSound());
    deliver(flatPicture(60));
    const auto begin = base::hostNow();
    const struct {
        base::HostDuration at;
        float value;
        bool isSilent;
    } pieces[]{{0s, 0.5F, false}, {1s, 0, false}, {4s, 0, false}, {6s, 0, true}, {7s, 0.1F, false}};
    for (const auto& [at, value, isSilent] : pieces) {
        script->sound->sound(soundOf(begin + at, 40ms, value));
        const auto sounds = recorder->statistics().sounds;
        ASSERT_EQ(sounds.size(), 1);
        EXPECT_EQ(sounds[0].isSilent, isSilent) << at / 1s;
        EXPECT_GE(sounds[0].level, value);
    }
    recorder->stop();
}

TEST_F(RecordingSessionTest, PausedBeforeItsFirstPictureBeginsWhenItIsResumed) {
    const auto recorder = startedSession();
    recorder->pause();
    EXPECT_FALSE(script->output->wantsPicture());
    EXPECT_EQ(deliver(flatPicture(200)), SampleDisposition::refused);
    EXPECT_FALSE(recorder->mark());
    EXPECT_TRUE(recorder->statistics().isPaused);
    recorder->resume();
    EXPECT_FALSE(recorder->mark()) << "nothing is recorded yet";
    deliver(flatPicture(60));
    EXPECT_TRUE(recorder->mark());
    const auto beforePause = base::hostNow();
    recorder->pause();
    EXPECT_FALSE(recorder->mark());
    EXPECT_TRUE(test::eventually([&] {
        return readCursorJournal(movie).cursorPositions.size() > 1;
    })) << "the end is safe on disk: nothing more may come for long";
    const auto end = base::hostNow() + 100ms;
    ASSERT_TRUE(test::eventually([&] { return base::hostNow() > end; }));
    const auto metadata = recorder->stop();
    EXPECT_LT(metadata.endTime, base::inSeconds(end - beforePause)) << "it ends with the pause";
    EXPECT_EQ(metadata.clickEvents.size(), 1U);
    EXPECT_NEAR(test::framesOf(movie).at(0).pixels->row(0, 100)[100], 60, 2);
}

TEST_F(RecordingSessionTest, MayBePausedAndMarkedOnAnyThreadUntilItHasStopped) {
    const auto recorder = startedSession(withSound());
    std::atomic<std::size_t> marks = 0;
    std::jthread other([&](const std::stop_token& stop) {
        for (; !stop.stop_requested(); marks += recorder->mark() ? 1 : 0) {
            recorder->pause();
            recorder->resume();
        }
    });
    ASSERT_TRUE(test::eventually([&] {
        deliver(flatPicture(60));
        script->sound->sound(soundOf(base::hostNow() - 10ms, 10ms));
        script->pointer->pointerAt({.time = base::hostNow(), .place = {}});
        return marks > 100;
    }));
    const auto metadata = recorder->stop();
    other = {};
    EXPECT_EQ(metadata.clickEvents.size(), marks);
    EXPECT_GT(recorder->statistics().pausedFor, 0s);
}

} // namespace
} // namespace vantro::capture
