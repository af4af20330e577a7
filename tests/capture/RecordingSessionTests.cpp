#include "base/Log.h"
#include "capture/MovieFrames.h"
#include "capture/RecordingSession.h"
#include "capture/ScriptedPlatform.h"
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
            request, [this] { return std::make_unique<test::ScriptedPlatform>(script); });
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

TEST_F(RecordingSessionTest, WaitsForADesktopThatAsksTheUserAndCanBeTakenBack) {
    script->onQuestion = [](const TargetAnswer&) {}; // the user takes their time
    const auto session = makeSession();
    std::stop_source cancelled;
    cancelled.request_stop();
    EXPECT_FALSE(session->choose(cancelled.get_token()));
    EXPECT_TRUE(script->isWithdrawn);
    script->onQuestion = [](TargetAnswer answer) { answer(std::nullopt); };
    EXPECT_FALSE(session->choose({})) << "the user has declined";
    RecordingTarget target;
    target.width = 320;
    target.height = 240;
    std::jthread desktop;
    script->onQuestion = [&](TargetAnswer answer) {
        desktop = std::jthread([answer = std::move(answer), target] { answer(target); });
    };
    EXPECT_TRUE(session->choose({}));
    session->start(movie); // asks nobody again
    deliver(flatPicture(60));
    session->stop();
    EXPECT_EQ(test::framesOf(movie).at(0).pixels->width(), 320);
}

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

media::AudioBuffer tone(base::HostTime time) {
    return {.presentationTime = {time.time_since_epoch().count(), 1'000'000'000},
            .samples = std::vector<float>(std::size_t{2} * 4800, 0.25F)}; // a tenth of a second
}

TEST_F(RecordingSessionTest, RecordsASoundAlongWithTheScreen) {
    script->hasMicrophone = true;
    RecordingRequest request;
    request.sources = {.systemSound = true, .microphone = true};
    const auto recorder = startedSession(request);
    script->sound->sound(tone(base::hostNow())); // before time zero
    const auto zero = base::hostNow();
    deliver(flatPicture(60));
    for (int piece = 2; piece < 5; ++piece)
        script->sound->sound(tone(zero + piece * 100ms));
    ASSERT_TRUE(test::eventually([&] { return base::hostNow() > zero + 500ms; }));
    const auto metadata = recorder->stop();
    EXPECT_TRUE(metadata.hasMicrophoneAudio);
    EXPECT_FALSE(metadata.hasSystemAudio);
    EXPECT_THAT(recorder->statistics().lostSources,
                testing::ElementsAre("System audio: there are no loudspeakers"));
    const auto tracks = media::Asset::open(movie).tracks(media::MediaType::audio);
    ASSERT_EQ(tracks.size(), 1);
    EXPECT_EQ(tracks[0].timeRange.start, media::MediaTime{});
    EXPECT_NEAR(tracks[0].timeRange.end().seconds(), metadata.endTime, 0.05);
}

TEST_F(RecordingSessionTest, ASoundThatFailsAtAnyTimeDoesTheRecordingNoHarm) {
    script->hasMicrophone = true;
    RecordingRequest request;
    request.sources.microphone = true;
    for (const bool failsAtStart : {true, false}) {
        script->microphoneFailure = failsAtStart ? "it is muted" : "";
        const auto recorder = startedSession(request);
        deliver(flatPicture(60));
        if (!failsAtStart)
            script->sound->soundStopped("it was unplugged");
        deliver(flatPicture(90));
        EXPECT_FALSE(recorder->stop().hasMicrophoneAudio);
        EXPECT_EQ(recorder->statistics().framesCaptured, 2);
        EXPECT_THAT(recorder->statistics().lostSources,
                    testing::ElementsAre(failsAtStart ? "Microphone: it is muted"
                                                      : "Microphone: it was unplugged"));
        EXPECT_GE(test::framesOf(movie).size(), 2);
    }
}

TEST_F(RecordingSessionTest, LeavesAPauseOutOfEverything) {
    const auto before = base::hostNow();
    const auto recorder = startedSession();
    deliver(flatPicture(60));
    recorder->pause();
    EXPECT_EQ(deliver(flatPicture(200)), SampleDisposition::refused) << "offered again afterwards";
    const auto end = base::hostNow() + 300ms;
    ASSERT_TRUE(test::eventually([&] { return base::hostNow() > end; }));
    recorder->resume();
    deliver(flatPicture(180));
    const auto metadata = recorder->stop();
    const double longest = base::inSeconds(base::hostNow() - before) - 0.3;
    EXPECT_LT(metadata.endTime, longest);
    EXPECT_EQ(recorder->statistics().framesDropped, 0);
    const auto frames = test::framesOf(movie);
    ASSERT_GE(frames.size(), 2);
    EXPECT_NEAR(frames[1].pixels->row(0, 100)[100], 180, 2);
    EXPECT_LT(frames[1].presentationTime.seconds(), longest);
}

TEST_F(RecordingSessionTest, LogsTheStepsOfARecording) {
    base::configureLog(base::LogLevel::info);
    testing::internal::CaptureStderr();
    RecordingRequest request;
    request.sources.systemSound = true;
    const auto recorder = startedSession(request);
    deliver(flatPicture(60));
    script->output->streamStopped("the screen went away");
    EXPECT_EQ(recorder->statistics().condition, RecordingCondition::streamStopped);
    recorder->stop();
    base::configureLog(base::LogLevel::warning);
    const std::string log = testing::internal::GetCapturedStderr();
    std::size_t at = 0;
    for (const std::string line :
         {"Capturing screen: 320x240, systemAudio: true, mic: false\n",
          "Display: 320x240, captureRect: (0, 0, 320, 240)\n", "Capture started\n",
          "First frame at ", "Stream stopped with error: the screen went away\n",
          "Stopping capture, 1 frames written\n", "Asset writer finished, status: 2\n"}) {
        at = log.find(line, at);
        ASSERT_NE(at, std::string::npos) << line << " is missing or out of order in\n" << log;
    }
}

} // namespace
} // namespace vantro::capture
