#include "app/files/UnsavedRecordings.h"
#include "app/flows/RecordingFlow.h"
#include "app/flows/ScriptedServices.h"
#include "support/Environment.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace vantro::app::flows {
namespace {

using namespace std::chrono_literals;
using Kind = model::VantroError::Kind;
using enum AppPhase::Kind;
using testing::ElementsAre;

/// A recording flow whose recordings go to a folder of their own.
class RecordingFlowTest : public testing::Test {
  protected:
    RecordingFlowTest() {
        variables.set("TMPDIR", folder.path());
        state.setCaptureMode(model::CaptureMode::screen);
        QObject::connect(&state, &AppState::phaseChanged,
                         [this] { phases.push_back(state.phase().kind); });
    }

    void record() {
        flow.preparation().begin();
        tasks.runAll();
    }
    test::ScriptedRecorder& recorder() { return *platform.next; }
    /// As a project that has been read meanwhile.
    void openEditor() {
        model::Project project{
            .name = "p", .recording = {"/p/recording.mov", model::RecordingMetadata{}}, .edit = {}};
        state.show(std::move(project), "/p");
    }

    test::TemporaryFolder folder;
    test::Environment variables;
    AppState state{7};
    test::ScriptedPlatform platform;
    test::ScriptedOverlays overlays;
    test::ManualTimers timers;
    test::ManualTasks tasks;
    RecordingFlow flow{state, {platform, overlays, timers, tasks}};
    std::vector<AppPhase::Kind> phases;
};

/// A desktop that asks itself, and cannot leave our windows out.
class ChosenOnDesktopTest : public RecordingFlowTest {
  protected:
    ChosenOnDesktopTest() {
        platform.able.listsContent.whyNot = "The desktop asks.";
        platform.able.ownWindowsLeftOut.whyNot = "They are hidden.";
        recorder().content = content;
        QObject::connect(&flow, &RecordingFlow::windowsHiddenChanged, [this] {
            hiddenAt.emplace_back(flow.areWindowsHidden(), recorder().hides);
        });
    }

    capture::ChosenContent content{
        .place = model::Rect{0, 0, 640, 360},
        .picture = media::PixelBuffer::allocate(media::PixelFormat::bgra, 2, 2)};
    std::vector<std::pair<bool, int>> hiddenAt; ///< and how often that had been waited for
};

TEST_F(ChosenOnDesktopTest, SelectsTheAreaOnAPictureWithoutOurWindowsAndHidesThemUntilTheEnd) {
    using Changes = decltype(hiddenAt);
    for (const int countdown : {0, 3}) {
        hiddenAt.clear();
        recorder().hides = 0;
        flow.preparation().setCountdown(countdown);
        state.setCaptureMode(model::CaptureMode::area);
        state.setSelectedRect({1, 2, 30, 40});
        record();
        EXPECT_EQ(overlays.shown, content.picture);
        EXPECT_EQ(platform.made.back().area, model::Rect{}) << "not one of another recording";
        overlays.callbacks.onSelection(0, {10, 20, 100, 50});
        tasks.runAll();
        EXPECT_EQ(recorder().area, (model::Rect{10, 20, 100, 50}));
        EXPECT_EQ(flow.areWindowsHidden(), countdown == 0);
        timers.advance(3s);
        tasks.runAll();
        EXPECT_TRUE(flow.areWindowsHidden() && !flow.preparation().chosenContent());
        flow.stopRecording();
        tasks.runAll();
        EXPECT_EQ(hiddenAt, countdown == 0
                                ? Changes({{true, 0}, {false, 2}})
                                : Changes({{true, 0}, {false, 1}, {true, 1}, {false, 2}}));
        EXPECT_EQ(files::recordingName(recorder().movie), state.recordingName());
        state.reset();
    }
}

TEST_F(ChosenOnDesktopTest, TakesWhatTheDialogHasCutOutAsTheAreaAndHidesNothingBesideAWindow) {
    content.place.reset();
    recorder().content = content;
    for (const auto mode : {model::CaptureMode::area, model::CaptureMode::window}) {
        state.setCaptureMode(mode);
        record();
        EXPECT_EQ(overlays.shown, nullptr);
        EXPECT_EQ(state.phase(), AppPhase::recording());
        EXPECT_EQ(flow.areWindowsHidden(), mode == model::CaptureMode::area);
        state.reset();
    }
}

TEST_F(ChosenOnDesktopTest, ShowsARestoredChoiceBeforeItIsRecorded) {
    content.isRestored = true;
    recorder().content = content;
    record();
    EXPECT_TRUE(flow.preparation().isConfirming() && flow.preparation().chosenContent());
    flow.preparation().chooseAnew();
    EXPECT_TRUE(platform.made.back().chooseAgain);
    tasks.runAll();
    flow.preparation().confirm();
    tasks.runAll();
    EXPECT_EQ(state.phase(), AppPhase::recording());
    recorder().recorderStatus.condition = capture::RecordingCondition::streamStopped;
    EXPECT_TRUE(flow.areWindowsHidden());
    timers.advance(1s);
    EXPECT_FALSE(flow.areWindowsHidden()) << "what has happened must be seen";
}

TEST_F(ChosenOnDesktopTest, IsIdleWithoutAWordWhenSharingEndsBeforeTheFirstPicture) {
    recorder().isSharingEnded = true;
    record();
    EXPECT_EQ(state.phase(), AppPhase::idle());
    flow.preparation().setCountdown(3);
    record();
    timers.advance(1s);
    tasks.runAll();
    EXPECT_FALSE(flow.preparation().isUnderWay());
    recorder().isSharingEnded = false;
    flow.preparation().setCountdown(0);
    recorder().stopFailure = model::VantroError(Kind::noRecordingData);
    recorder().recorderStatus.condition = capture::RecordingCondition::userStopped;
    record();
    timers.advance(1s);
    tasks.runAll();
    EXPECT_EQ(state.phase(), AppPhase::idle());
    EXPECT_FALSE(state.showError());
}

TEST_F(RecordingFlowTest, AFailedChoiceOrStartIsShownAndLeavesTheApplicationIdle) {
    const auto expectIdle = [this](const char* message) {
        test::expectError(state, Kind::captureStartFailed, message);
        EXPECT_EQ(state.phase(), AppPhase::idle());
        EXPECT_EQ(timers.running(), 0U);
    };
    recorder().chooseFailure = model::VantroError(Kind::captureStartFailed, "Display not found");
    record();
    expectIdle("Display not found");
    recorder().chooseFailure.reset();
    recorder().startFailure = model::VantroError(Kind::assetWriterFailed, "disk full");
    record();
    expectIdle("Failed to write video: disk full");
    flow.preparation().begin();
    tasks.runWork(); // the choice
    tasks.runMain();
    flow.stopRecording(); // before the start has failed
    tasks.runAll();
    expectIdle("Failed to write video: disk full");
    EXPECT_FALSE(flow.isStopping());
}

TEST_F(RecordingFlowTest, AFailedStopIsShownAndLeavesTheRecordingForRecovery) {
    std::vector<std::string> recoverable;
    const auto note = [&](const QString& path) { recoverable.push_back(path.toStdString()); };
    QObject::connect(&flow, &RecordingFlow::leftBehind, note);
    recorder().stopFailure = model::VantroError(Kind::assetWriterFailed, "disk full");
    record();
    const auto movie = recorder().movie.string();
    flow.stopRecording();
    tasks.runAll();
    test::expectError(state, Kind::assetWriterFailed, "disk full");
    recorder().stopFailure.reset();
    record();
    std::filesystem::remove_all(recorder().movie.parent_path()); // no room for the metadata
    flow.stopRecording();
    tasks.runAll();
    test::expectError(state, Kind::assetWriterFailed, "metadata.json");
    EXPECT_THAT(phases, ElementsAre(recording, idle, recording, idle));
    EXPECT_THAT(recoverable, ElementsAre(movie, recorder().movie.string()));
    EXPECT_FALSE(state.metadata());
}

TEST_F(RecordingFlowTest, BeginsAsTheSettingsSayAndOpenedProjectsStayAsTheyAre) {
    const auto chosen = folder / "films";
    flow.preparation().setFolder(chosen);
    record();
    test::expectError(state, Kind::captureStartFailed, "films: No such file");
    EXPECT_TRUE(platform.made.empty()) << "nobody is asked what to record";
    std::filesystem::create_directory(chosen);
    flow.preparation().setFrameRate(24);
    const model::Look look{.background = {.type = model::BackgroundColor{1, 0, 0}, .padding = 0.2},
                           .canvasAspectRatio = model::CanvasAspectRatio::ratio1x1};
    state.setLook(look);
    record();
    EXPECT_EQ(platform.made.back().frameRate, 24);
    EXPECT_EQ(recorder().movie.parent_path().parent_path(), chosen);
    flow.stopRecording();
    tasks.runAll();
    EXPECT_EQ(model::lookOf(state.document().edit()), look);
    EXPECT_FALSE(state.document().isModified());
    state.reset();
    openEditor();
    state.setLook(model::Look{});
    state.setLook(look);
    EXPECT_EQ(model::lookOf(state.document().edit()), model::Look{});
    for (const auto& settings : {std::optional(look), std::optional<model::Look>()}) {
        state.reset();
        state.setLook(settings);
        record();
        flow.stopRecording();
        tasks.runAll();
        EXPECT_EQ(model::lookOf(state.document().edit()), settings.value_or(model::Look{}));
    }
}

TEST_F(RecordingFlowTest, InAPauseTheElapsedTimeStandsStill) {
    auto& status = recorder().recorderStatus;
    record();
    timers.advance(2s);
    flow.pauseOrResume();
    EXPECT_TRUE(flow.isPaused() && status.isPaused);
    timers.advance(5s);
    EXPECT_EQ(flow.elapsedSeconds(), 2);
    status.pausedFor = 4600ms;
    flow.pauseOrResume();
    EXPECT_FALSE(flow.isPaused() || status.isPaused);
    timers.advance(1s);
    EXPECT_EQ(flow.elapsedSeconds(), 3) << "of eight seconds";
    flow.pause();
    status.condition = capture::RecordingCondition::userStopped;
    timers.advance(1s);
    flow.resume();
    EXPECT_TRUE(flow.isStopping()) << "by the desktop's means, paused or not";
}

TEST_F(RecordingFlowTest, EveryPreparationIsGivenUpByTheUserAndWhenTheEditorOpens) {
    const auto beginWith = [this](model::CaptureMode mode, int countdown) {
        state.setCaptureMode(mode);
        flow.preparation().setCountdown(countdown);
        flow.preparation().begin();
    };
    const std::function<void()> preparations[]{
        [&] { beginWith(model::CaptureMode::window, 0); }, // the picker is shown
        [&] { beginWith(model::CaptureMode::screen, 0); }, // the user may be asked what to share
        [&] {
            beginWith(model::CaptureMode::screen, 3);
            tasks.runAll();
        }};
    for (const auto& prepare : preparations)
        for (const bool opensEditor : {true, false}) {
            prepare();
            opensEditor ? openEditor() : flow.preparation().cancel();
            tasks.runAll();
            timers.advance(5s);
            EXPECT_FALSE(flow.preparation().isWindowPickerShown());
            EXPECT_EQ(flow.preparation().countdownRemaining(), 0);
            EXPECT_EQ(timers.running(), 0U);
            EXPECT_EQ(state.phase(), opensEditor ? AppPhase::previewing() : AppPhase::idle());
            state.reset();
        }
    recorder().isTakenBack = true; // in the desktop's own dialog
    beginWith(model::CaptureMode::screen, 0);
    tasks.runAll();
    EXPECT_EQ(state.phase(), AppPhase::idle());
    EXPECT_FALSE(state.showError());
    EXPECT_EQ(recorder().starts, 0);
}

} // namespace
} // namespace vantro::app::flows
