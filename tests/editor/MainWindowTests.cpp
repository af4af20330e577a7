#include "app/files/FinishRecording.h"
#include "editor/EditorFixture.h"
#include "media/AssetWriter.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <fstream>

#include <gmock/gmock.h>

namespace vantro::editor {
namespace {

class MainWindowTest : public test::EditorFixture {};

TEST_F(MainWindowTest, OpensSmallWithTheRecordingControls) {
    showWindow();
    EXPECT_EQ(window().size(), QSize(340, 120));
    EXPECT_EQ(window().minimumSize(), window().maximumSize());
    EXPECT_EQ(item("record").property("help").toString(), "Record (Ctrl+R)");
    EXPECT_EQ(item("systemAudio").property("help").toString(), "System audio on");
    EXPECT_EQ(item("microphone").property("help").toString(), "Microphone off");
    EXPECT_EQ(item("webcam").property("symbol").toString(), "video.slash.fill");
    EXPECT_EQ(item("captureModes").property("current").toInt(), 2) << "area";
}

TEST_F(MainWindowTest, TogglesAndModesWriteTheStateAndShowIt) {
    showWindow();
    click("microphone");
    EXPECT_TRUE(state.microphoneAudioEnabled());
    EXPECT_EQ(item("microphone").property("symbol").toString(), "mic.fill");
    click("systemAudio");
    EXPECT_FALSE(state.systemAudioEnabled());
    click("webcam");
    EXPECT_TRUE(state.webcamEnabled());
    state.setCaptureMode(model::CaptureMode::screen);
    settle();
    EXPECT_EQ(item("captureModes").property("current").toInt(), 0);
    item("captureModes").forceActiveFocus();
    key(Qt::Key_Right);
    EXPECT_EQ(state.captureMode(), model::CaptureMode::window);
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    EXPECT_EQ(state.captureMode(), model::CaptureMode::area) << "the last one stays";
}

TEST_F(MainWindowTest, WaitsForPermissionAndShowsTheControlsOnceItIsGranted) {
    granted = false;
    permission.setScreenRecordingGranted(false);
    showWindow();
    EXPECT_FALSE(shows("record"));
    EXPECT_EQ(item("screen").property("item").value<QQuickItem*>()->property("text").toString(),
              "Waiting for permission...");
    granted = true;
    timers.advance(std::chrono::seconds(2));
    settle();
    EXPECT_TRUE(shows("record"));
}

TEST_F(MainWindowTest, RecordsFromTheKeyboardCountsAndStops) {
    state.setCaptureMode(model::CaptureMode::screen);
    showWindow();
    key(Qt::Key_R, Qt::ControlModifier);
    runTasks();
    EXPECT_EQ(state.phase(), app::AppPhase::recording());
    EXPECT_EQ(text("elapsed"), "00:00");
    timers.advance(std::chrono::seconds(65));
    settle();
    EXPECT_EQ(text("elapsed"), "01:05");
    EXPECT_LT(window().height(), 80);
    key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(text("elapsed"), "Finishing...");
    EXPECT_FALSE(item("stop").isEnabled());
    runTasks();
    EXPECT_EQ(state.phase(), app::AppPhase::previewing());
    EXPECT_TRUE(shows("recordingName"));
    EXPECT_GT(window().width(), 700);
}

TEST_F(MainWindowTest, RecordsAndStopsByMouse) {
    state.setCaptureMode(model::CaptureMode::screen);
    showWindow();
    click("record");
    runTasks();
    click("stop");
    runTasks();
    EXPECT_EQ(state.phase(), app::AppPhase::previewing());
}

TEST_F(MainWindowTest, TellsWhenCaptureHasEndedByItself) {
    showWindow();
    record();
    platform.next->recorderStatus.condition = capture::RecordingCondition::streamStopped;
    timers.advance(std::chrono::seconds(1));
    settle();
    EXPECT_TRUE(app.captureEnded());
    EXPECT_GT(window().height(), 60) << "makes room for the note";
}

TEST_F(MainWindowTest, SelectingCanBeCancelled) {
    showWindow();
    click("record");
    runTasks();
    EXPECT_EQ(state.phase(), app::AppPhase::selecting());
    EXPECT_EQ(text("statusAction"), "Cancel");
    click("statusAction");
    EXPECT_EQ(state.phase(), app::AppPhase::idle());
    EXPECT_TRUE(overlays.shown.expired());
    EXPECT_TRUE(shows("record"));
}

TEST_F(MainWindowTest, ACountdownShowsItsSecondsAndEscapeCancelsIt) {
    showWindow();
    recording.setCountdown(3);
    record();
    EXPECT_EQ(app.screen(), "countdown");
    timers.advance(std::chrono::seconds(1));
    settle();
    EXPECT_EQ(item("screen").property("item").value<QQuickItem*>()->property("text").toString(),
              "2");
    key(Qt::Key_Escape);
    EXPECT_TRUE(shows("record"));
    EXPECT_EQ(platform.next->starts, 0);
}

TEST_F(MainWindowTest, EveryErrorIsShownWithItsAdviceUntilItIsDismissed) {
    showWindow();
    using Kind = model::VantroError::Kind;
    for (const auto kind :
         {Kind::captureStartFailed, Kind::assetWriterFailed, Kind::exportFailed,
          Kind::projectSaveFailed, Kind::projectOpenFailed, Kind::screenRecordingPermissionDenied,
          Kind::noRecordingData, Kind::invalidSelection}) {
        state.setError("Display not found", kind);
        settle();
        const model::VantroError error(kind, "Display not found");
        auto& card = item("alertCard");
        EXPECT_EQ(card.property("title").toString(), "Error");
        EXPECT_EQ(card.property("text").toString().toStdString(), error.description());
        EXPECT_EQ(card.property("detail").toString().toStdString(), error.recoverySuggestion());
        EXPECT_GE(window().height(), 140) << "the window makes room for the message";
        EXPECT_EQ(text("acceptButton"), "OK");
        if (kind == Kind::captureStartFailed)
            click("acceptButton");
        else
            key(kind == Kind::exportFailed ? Qt::Key_Escape : Qt::Key_Return);
        EXPECT_FALSE(state.showError());
        EXPECT_FALSE(shows("alertCard"));
    }
    EXPECT_EQ(window().size(), QSize(340, 120));
}

TEST_F(MainWindowTest, AFailedStartIsDismissedFromTheKeyboardAndCanBeTriedAgain) {
    state.setCaptureMode(model::CaptureMode::screen);
    platform.next->startFailure =
        model::VantroError(model::VantroError::Kind::captureStartFailed, "gone");
    showWindow();
    key(Qt::Key_R, Qt::ControlModifier);
    runTasks();
    ASSERT_TRUE(shows("alertCard"));
    key(Qt::Key_Return);
    EXPECT_FALSE(state.showError());
    platform.next->startFailure.reset();
    key(Qt::Key_R, Qt::ControlModifier);
    runTasks();
    EXPECT_EQ(state.phase(), app::AppPhase::recording());
}

TEST_F(MainWindowTest, NothingBehindAMessageCanBeUsed) {
    state.setCaptureMode(model::CaptureMode::screen);
    showWindow();
    state.setError("x", model::VantroError::Kind::exportFailed);
    settle();
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    key(Qt::Key_Space); // still the message's own button
    EXPECT_FALSE(state.showError());
    EXPECT_EQ(state.phase(), app::AppPhase::idle());
}

TEST_F(MainWindowTest, ClosingWhileRecordingAsksAndCanBeTakenBack) {
    showWindow();
    record();
    window().close();
    settle();
    ASSERT_TRUE(window().isVisible());
    EXPECT_EQ(item("quitCard").property("reject").toString(), "Keep Recording");
    key(Qt::Key_Escape);
    EXPECT_FALSE(shows("quitCard"));
    EXPECT_EQ(state.phase(), app::AppPhase::recording());
}

TEST_F(MainWindowTest, ClosingWhileRecordingFinishesTheFileBeforeItQuits) {
    showWindow();
    record();
    int quits = 0;
    QObject::connect(&app, &window::MainModel::quitReady, [&] { ++quits; });
    window().close();
    settle();
    key(Qt::Key_Return);
    EXPECT_TRUE(app.stopping());
    EXPECT_EQ(quits, 0);
    runTasks();
    EXPECT_EQ(platform.next->stops, 1);
    EXPECT_EQ(quits, 1);
}

TEST_F(MainWindowTest, ARecordingThatCannotBeFinishedIsShownInsteadOfQuitting) {
    showWindow();
    record();
    platform.next->stopFailure =
        model::VantroError(model::VantroError::Kind::assetWriterFailed, "disk full");
    int quits = 0;
    QObject::connect(&app, &window::MainModel::quitReady, [&] { ++quits; });
    app.stopAndQuit();
    runTasks();
    EXPECT_EQ(quits, 0);
    EXPECT_TRUE(shows("alertCard"));
}

TEST_F(MainWindowTest, ClosesAtOnceWhenNothingIsRecorded) {
    showWindow();
    window().close();
    settle();
    EXPECT_FALSE(window().isVisible());
}

void writeShortMovie(const std::filesystem::path& path) {
    media::AssetWriter writer(path, media::FileType::quickTimeMovie, {.width = 64, .height = 64});
    writer.startWriting();
    writer.startSession({});
    writer.append({.pixels = media::PixelBuffer::allocate(media::PixelFormat::bgra, 64, 64),
                   .presentationTime = {},
                   .duration = {}});
    writer.finish();
}

TEST_F(MainWindowTest, OffersTheLastRecordingAndOpensOrDismissesIt) {
    const auto folder =
        std::filesystem::temp_directory_path() / ("recover-" + model::Uuid::random().toString());
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "recording.mov") << "movie";
    recovery.offer(folder / "no such.mov");
    EXPECT_FALSE(app.recoveryOffered());
    recovery.offer(folder / "recording.mov");
    showWindow();
    ASSERT_TRUE(shows("recoveryCard"));
    click("acceptButton");
    runTasks();
    EXPECT_TRUE(shows("alertCard")) << "the movie is none";
    key(Qt::Key_Return);

    model::RecordingMetadata metadata;
    metadata.endTime = 9;
    metadata.clickEvents.emplace_back().timestamp = 3;
    writeShortMovie(folder / "recording.mov");
    app::files::finishRecording(folder / "recording.mov", metadata);
    recovery.offer(folder / "recording.mov");
    settle();
    click("acceptButton");
    runTasks();
    EXPECT_EQ(state.phase(), app::AppPhase::previewing());
    ASSERT_TRUE(state.metadata());
    EXPECT_EQ(*state.metadata(), metadata);
    EXPECT_EQ(state.editableClickEvents().size(), 1U);

    state.reset();
    recovery.offer(folder / "recording.mov");
    settle();
    key(Qt::Key_Escape);
    EXPECT_FALSE(app.recoveryOffered());
    EXPECT_EQ(state.phase(), app::AppPhase::idle());
    std::filesystem::remove_all(folder);
}

TEST_F(MainWindowTest, OpenProjectAsksOnceAtATime) {
    showWindow();
    key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(panels.kind, app::flows::PanelKind::openProject);
    EXPECT_FALSE(item("openProject").isEnabled());
    panels.answer({});
    settle();
    EXPECT_TRUE(item("openProject").isEnabled());
}

} // namespace
} // namespace vantro::editor
