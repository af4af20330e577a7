#include "app/flows/RecordingFlow.h"
#include "app/flows/ScriptedServices.h"
#include "model/Json.h"

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::app::flows {
namespace {

using namespace std::chrono_literals;
using Kind = model::VantroError::Kind;

/// A recording flow whose recordings go to a folder of their own.
class RecordingFlowTest : public testing::Test {
  protected:
    RecordingFlowTest() {
        folder =
            std::filesystem::temp_directory_path() / ("flow-" + model::Uuid::random().toString());
        ::setenv("TMPDIR", folder.c_str(), 1); // NOLINT(concurrency-mt-unsafe): one thread
        QObject::connect(&state, &AppState::phaseChanged,
                         [this] { phases.push_back(state.phase().kind); });
    }
    ~RecordingFlowTest() override {
        std::filesystem::remove_all(folder);
        ::unsetenv("TMPDIR"); // NOLINT(concurrency-mt-unsafe): one thread
    }

    void recordScreen() {
        state.setCaptureMode(model::CaptureMode::screen);
        flow.beginCapture();
        tasks.runAll();
    }
    test::ScriptedRecorder& recorder() { return *platform.next; }
    void expectError(Kind kind, std::string_view message) {
        EXPECT_TRUE(state.showError());
        ASSERT_TRUE(state.error());
        EXPECT_EQ(state.error()->kind(), kind);
        EXPECT_EQ(state.error()->message(), message);
    }

    std::filesystem::path folder;
    AppState state{7};
    test::ScriptedPlatform platform;
    test::ScriptedOverlays overlays;
    test::ManualTimers timers;
    test::ManualTasks tasks;
    RecordingFlow flow{state, {platform, overlays, timers, tasks}};
    std::vector<AppPhase::Kind> phases;
};

using enum AppPhase::Kind;
using testing::ElementsAre;

TEST_F(RecordingFlowTest, ScreenModeRecordsTheWholeMainScreenIntoAFreshFolder) {
    recordScreen();
    EXPECT_EQ(state.phase(), AppPhase::recording());
    ASSERT_EQ(platform.made.size(), 1U);
    const auto& made = platform.made.front();
    EXPECT_EQ(made.mode, model::CaptureMode::screen);
    EXPECT_EQ(made.displayID, 7U);
    EXPECT_TRUE(made.sources.systemSound);
    EXPECT_EQ(recorder().movie.filename(), "recording.mov");
    EXPECT_EQ(recorder().movie.parent_path().parent_path(), folder / "Vantro");
    EXPECT_TRUE(std::filesystem::is_empty(recorder().movie.parent_path()));
    EXPECT_EQ(recorder().starts, 1);
}

TEST_F(RecordingFlowTest, AScreenThatIsSelectedAlreadyIsNotSelectedAgain) {
    state.setSelectedRect({0, 0, 1920, 1080});
    int changes = 0;
    QObject::connect(&state, &AppState::selectedRectChanged, [&] { ++changes; });
    recordScreen();
    EXPECT_EQ(changes, 0);
}

TEST_F(RecordingFlowTest, SecondsAreCountedFromZeroUntilTheStop) {
    recordScreen();
    EXPECT_EQ(flow.elapsedSeconds(), 0);
    timers.advance(3s);
    EXPECT_EQ(flow.elapsedSeconds(), 3);
    flow.stopRecording();
    EXPECT_EQ(timers.running(), 0U);
    tasks.runAll();
    state.reset();
    recordScreen();
    EXPECT_EQ(flow.elapsedSeconds(), 0);
}

TEST_F(RecordingFlowTest, AStoppedRecordingBecomesAnEditOfItsClicks) {
    recorder().metadata.endTime = 20;
    for (const double time : {10.0, 0.3, 11.6})
        recorder().metadata.clickEvents.emplace_back().timestamp = time;
    state.setSelectedSegmentID(model::Uuid::random());
    recordScreen();
    flow.stopRecording();
    EXPECT_TRUE(flow.isStopping());
    tasks.runAll();

    EXPECT_FALSE(flow.isStopping());
    EXPECT_THAT(phases, ElementsAre(recording, previewing));
    const auto& movie = recorder().movie;
    EXPECT_EQ(state.recordingPath(), movie);
    EXPECT_EQ(state.metadataPath(), movie.parent_path() / "metadata.json");
    ASSERT_TRUE(state.metadata());
    EXPECT_EQ(*state.metadata(), recorder().metadata);
    ASSERT_EQ(state.editableClickEvents().size(), 3U);
    EXPECT_DOUBLE_EQ(state.editableClickEvents()[0].startOffset, 0.3);
    EXPECT_DOUBLE_EQ(state.editableClickEvents()[1].endOffset, 0.8);
    EXPECT_EQ(state.segments().size(), 1U);
    EXPECT_FALSE(state.selectedSegmentID());

    std::ifstream file(*state.metadataPath());
    const std::string json{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(model::decodeMetadata(json), recorder().metadata);
}

TEST_F(RecordingFlowTest, AFailedStartIsShownAndLeavesTheApplicationIdle) {
    QObject::connect(&flow, &RecordingFlow::begun, [] { ADD_FAILURE() << "nothing to recover"; });
    for (const auto& [failure, message] :
         {std::pair{model::VantroError(Kind::captureStartFailed, "Display not found"),
                    std::string("Display not found")},
          std::pair{model::VantroError(Kind::assetWriterFailed, "disk full"),
                    std::string("Failed to write video: disk full")},
          std::pair{model::VantroError(Kind::screenRecordingPermissionDenied),
                    std::string("Screen recording permission is required to capture your "
                                "screen.")}}) {
        recorder().startFailure = failure;
        recordScreen();
        expectError(Kind::captureStartFailed, message);
        EXPECT_EQ(state.phase(), AppPhase::idle());
        EXPECT_EQ(timers.running(), 0U);
        state.setShowError(false);
    }
}

TEST_F(RecordingFlowTest, AStopAskedForDuringAStartThatFailsReportsTheStartAlone) {
    recorder().startFailure = model::VantroError(Kind::captureStartFailed, "Display not found");
    recorder().stopFailure = model::VantroError(Kind::assetWriterFailed, "never started");
    state.setCaptureMode(model::CaptureMode::screen);
    flow.beginCapture();
    tasks.runWork(); // the choice
    tasks.runMain();
    flow.stopRecording();
    tasks.runAll();
    expectError(Kind::captureStartFailed, "Display not found");
    EXPECT_EQ(state.phase(), AppPhase::idle());
    EXPECT_FALSE(flow.isStopping());
}

TEST_F(RecordingFlowTest, AFailedStopIsShownAndKeepsTheEarlierRecordingFields) {
    state.show(
        {"earlier", model::Recording("/earlier/recording.mov", model::RecordingMetadata{}), {}});
    state.setPhase(AppPhase::idle());
    phases.clear();
    recorder().stopFailure = model::VantroError(Kind::assetWriterFailed, "disk full");
    std::vector<std::string> recoverable;
    const auto note = [&](const QString& path) { recoverable.push_back(path.toStdString()); };
    QObject::connect(&flow, &RecordingFlow::begun, note);
    QObject::connect(&flow, &RecordingFlow::leftBehind, note);
    recordScreen();
    const auto movie = recorder().movie.string();
    EXPECT_THAT(recoverable, ElementsAre(movie));
    flow.stopRecording();
    tasks.runAll();
    EXPECT_THAT(recoverable, ElementsAre(movie, movie));
    expectError(Kind::assetWriterFailed, "disk full");
    EXPECT_THAT(phases, ElementsAre(recording, idle));
    EXPECT_EQ(state.recordingPath(), "/earlier/recording.mov");
}

TEST_F(RecordingFlowTest, MetadataThatCannotBeWrittenFailsTheStop) {
    recordScreen();
    std::filesystem::remove_all(recorder().movie.parent_path());
    flow.stopRecording();
    tasks.runAll();
    ASSERT_TRUE(state.error());
    EXPECT_EQ(state.error()->kind(), Kind::assetWriterFailed);
    EXPECT_THAT(state.error()->message(), testing::HasSubstr("metadata.json"));
    EXPECT_EQ(state.phase(), AppPhase::idle());
    EXPECT_FALSE(state.recordingPath());
}

TEST_F(RecordingFlowTest, SecondClicksOnRecordAndStopDoNothing) {
    recordScreen();
    flow.beginCapture();
    EXPECT_EQ(platform.made.size(), 1U);
    flow.stopRecording();
    flow.stopRecording();
    EXPECT_EQ(tasks.waitingWork(), 1U);
    tasks.runAll();
    flow.stopRecording();
    flow.beginCapture();
    EXPECT_EQ(recorder().stops, 1);
    EXPECT_EQ(platform.made.size(), 1U) << "a recording begins only when idle";
}

TEST_F(RecordingFlowTest, AWindowIsRecordedOnTheFirstDisplayThatItTouches) {
    state.setCaptureMode(model::CaptureMode::window);
    for (const auto& [frame, display] : {std::pair{model::Rect{1800, 10, 400, 300}, 7U},
                                         std::pair{model::Rect{1920, 10, 400, 300}, 8U},
                                         std::pair{model::Rect{-900, 10, 400, 300}, 7U}}) {
        flow.beginCapture();
        ASSERT_TRUE(flow.isWindowPickerShown());
        EXPECT_EQ(state.phase(), AppPhase::idle());
        flow.windowSelected(test::windowOf(5, "w", frame));
        EXPECT_FALSE(flow.isWindowPickerShown());
        tasks.runAll();
        EXPECT_EQ(state.phase(), AppPhase::recording());
        EXPECT_EQ(platform.made.back().displayID, display);
        EXPECT_EQ(state.selectedRect(), frame);
        EXPECT_EQ(platform.made.back().windowID, 5U);
        state.reset();
    }
}

TEST_F(RecordingFlowTest, ACancelledWindowPickerLeavesTheApplicationIdle) {
    state.setCaptureMode(model::CaptureMode::window);
    flow.beginCapture();
    flow.windowPickerCancelled();
    EXPECT_FALSE(flow.isWindowPickerShown());
    EXPECT_TRUE(phases.empty());
    EXPECT_TRUE(platform.made.empty());
}

TEST_F(RecordingFlowTest, AnAreaIsSelectedOnTheOverlayAndThenRecorded) {
    flow.beginCapture();
    EXPECT_TRUE(overlays.shown.expired()) << "the overlay comes on the next turn";
    tasks.runAll();
    EXPECT_FALSE(overlays.shown.expired());
    overlays.callbacks.onSelection(8, {2000, 20, 300, 200});
    tasks.runAll();
    EXPECT_TRUE(overlays.shown.expired());
    EXPECT_THAT(phases, ElementsAre(selecting, recording));
    EXPECT_EQ(platform.made.front().area, (model::Rect{2000, 20, 300, 200}));
    EXPECT_EQ(platform.made.front().displayID, 8U);
}

TEST_F(RecordingFlowTest, ACancelledOrImpossibleOverlayLeavesTheApplicationIdle) {
    flow.beginCapture();
    tasks.runAll();
    overlays.callbacks.onCancel();
    EXPECT_FALSE(overlays.shown.expired()) << "not in the overlay's own call";
    tasks.runAll();
    EXPECT_THAT(phases, ElementsAre(selecting, idle));
    EXPECT_FALSE(state.overlayWindow());
    EXPECT_TRUE(overlays.shown.expired());

    flow.beginCapture();
    flow.areaCancelled(); // before the overlay has come
    tasks.runAll();
    EXPECT_TRUE(overlays.shown.expired());

    overlays.hasScreen = false;
    flow.beginCapture();
    tasks.runAll();
    EXPECT_EQ(state.phase(), AppPhase::idle());
    EXPECT_TRUE(platform.made.empty());
}

TEST_F(RecordingFlowTest, ACountdownRunsBeforeTheRecordingAndCanBeCancelled) {
    flow.setCountdown(3);
    recordScreen();
    EXPECT_EQ(flow.countdownRemaining(), 3);
    EXPECT_EQ(state.phase(), AppPhase::idle());
    flow.beginCapture();
    timers.advance(2s);
    EXPECT_EQ(flow.countdownRemaining(), 1);
    flow.cancelPreparation();
    timers.advance(5s);
    EXPECT_EQ(recorder().starts, 0);
    EXPECT_EQ(flow.countdownRemaining(), 0);

    recordScreen();
    for (int second = 0; second < 3; ++second)
        timers.advance(1s);
    tasks.runAll();
    EXPECT_EQ(state.phase(), AppPhase::recording());
    EXPECT_EQ(recorder().starts, 1);
    EXPECT_EQ(timers.running(), 1U) << "only the seconds are counted now";
}

TEST_F(RecordingFlowTest, TellsEverySecondWhetherCaptureStillRunsAndWhatWasDropped) {
    recordScreen();
    int changes = 0;
    QObject::connect(&flow, &RecordingFlow::recorderStatusChanged, [&] { ++changes; });
    timers.advance(1s);
    EXPECT_EQ(changes, 0);
    recorder().recorderStatus.framesDropped = 4;
    recorder().recorderStatus.condition = capture::RecordingCondition::streamStopped;
    timers.advance(2s);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(flow.recorderStatus().framesDropped, 4);
    EXPECT_EQ(state.phase(), AppPhase::recording()) << "the user stops it";
    flow.stopRecording();
    tasks.runAll();
    state.reset();
    recordScreen();
    EXPECT_TRUE(flow.recorderStatus().isCapturing());
}

TEST_F(RecordingFlowTest, TwoRecordingsWithinASecondGetFoldersOfTheirOwn) {
    recordScreen();
    const auto first = recorder().movie;
    state.reset();
    recordScreen();
    EXPECT_NE(recorder().movie, first);
}

} // namespace
} // namespace vantro::app::flows
