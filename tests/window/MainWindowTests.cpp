#include "window/WindowFixture.h"

#include <QAccessible>
namespace vantro::window {
namespace {

using Kind = model::VantroError::Kind;

class MainWindowTest : public test::WindowFixture {};

TEST_F(MainWindowTest, OpensSmallAndItsSwitchesAndModesAreThoseOfTheState) {
    showWindow();
    EXPECT_EQ(window().size(), QSize(340, 120));
    EXPECT_EQ(window().minimumSize(), window().maximumSize());
    click("microphone");
    EXPECT_TRUE(state.microphoneAudioEnabled());
    EXPECT_EQ(item("microphone").property("symbol").toString(), "mic.fill");
    state.setCaptureMode(model::CaptureMode::screen);
    settle();
    item("captureModes").forceActiveFocus();
    key(Qt::Key_Right);
    EXPECT_EQ(state.captureMode(), model::CaptureMode::window);
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    EXPECT_EQ(state.captureMode(), model::CaptureMode::area) << "the last one stays";
}

TEST_F(MainWindowTest,
       ScreenModeOffersTheDisplaysWhereThereAreSeveralAndRecordsTheChosenOneElseTheMainOne) {
    showWindow();
    EXPECT_FALSE(shows("displays")) << "area mode has all of them";
    state.setCaptureMode(model::CaptureMode::screen);
    settle();
    EXPECT_GT(window().height(), 120);
    EXPECT_EQ(item("displays").property("count").toInt(), 2);
    EXPECT_EQ(item("displays").property("currentIndex").toInt(), 0);
    item("displays").forceActiveFocus();
    key(Qt::Key_Down);
    record();
    EXPECT_EQ(platform.made.back().displayID, platform.attached[1].displayID);
    EXPECT_EQ(state.selectedRect(), platform.attached[1].frame);
    state.reset();
    settle();
    platform.attached.pop_back();
    displays.refresh();
    settle();
    EXPECT_FALSE(shows("displays"));
    EXPECT_EQ(displays.current(), 0) << "the other one is gone";
    record();
    EXPECT_EQ(platform.made.back().displayID, platform.attached[0].displayID);
}

TEST_F(MainWindowTest, WhatARecordingDoesWithoutIsSaidInALine) {
    showWindow();
    record();
    auto& status = platform.next->recorderStatus;
    const capture::SoundStatus silent{
        .kind = capture::SoundKind::microphone, .level = 0, .isSilent = true};
    const struct {
        std::vector<std::string> lost;
        std::vector<capture::SoundStatus> sounds;
        const char* said;
    } cases[]{
        {{}, {}, ""},
        {{}, {silent}, "The microphone is silent."},
        {{"Microphone: it is gone"}, {silent}, "Not recorded: Microphone: it is gone"},
    };
    for (const auto& [lost, sounds, said] : cases) {
        status.lostSources = lost;
        status.sounds = sounds;
        timers.advance(std::chrono::seconds(1));
        settle();
        EXPECT_EQ(app.recordingNote(), said);
    }
}

TEST_F(MainWindowTest, WhatTheDesktopCannotDoIsNotOfferedAndSaysWhy) {
    platform.able.microphone.whyNot = "No microphone yet.";
    platform.able.windows.whyNot = "No single windows here.";
    showWindow();
    guard.askAgain();
    settle();
    click("microphone");
    EXPECT_FALSE(state.microphoneAudioEnabled());
    EXPECT_EQ(item("microphone").property("symbol").toString(), "mic.slash.fill");
    EXPECT_TRUE(QTest::qWaitFor([this] { return shows("tipText"); }));
    EXPECT_EQ(text("tipText"), "No microphone yet.");

    EXPECT_FALSE(shows("modeMissing"));
    state.setCaptureMode(model::CaptureMode::window);
    settle();
    EXPECT_EQ(text("modeMissing"), "No single windows here.");
    key(Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(shows("record"));
}

TEST_F(MainWindowTest, LeadsToTheDesktopsOwnDialogWhereThereIsOneAndBack) {
    platform.able.listsContent.whyNot = "The desktop asks.";
    state.setCaptureMode(model::CaptureMode::window);
    showWindow();
    guard.askAgain();
    settle();
    EXPECT_EQ(item("chooseAnew").property("text").toString(), "Choose a window…");
    EXPECT_GE(item("record").y(), item("chooseAnew").y() + item("chooseAnew").height());
    click("chooseAnew");
    EXPECT_EQ(app.screen(), "asking");
    click("statusAction");
    EXPECT_TRUE(shows("record"));
}

TEST_F(MainWindowTest, ShowsWhatIsRestoredAndSaysThatItHidesItself) {
    platform.able.listsContent.whyNot = "The desktop asks.";
    platform.able.ownWindowsLeftOut.whyNot = "Vantro's own windows are hidden.";
    const auto picture = media::PixelBuffer::allocate(media::PixelFormat::bgra, 160, 90);
    for (int y = 0; y < 90; ++y)
        std::fill_n(picture->mutableRow(0, y), 160 * 4, std::uint8_t{200});
    platform.next->content = {.isRestored = true, .picture = picture};
    showWindow();
    guard.askAgain();
    for (const auto mode : model::allCaptureModes) {
        state.setCaptureMode(mode);
        settle();
        EXPECT_EQ(shows("ownWindows"), mode != model::CaptureMode::window);
        EXPECT_GE(item("record").y(), item("chooseAnew").y() + item("chooseAnew").height());
    }
    state.setCaptureMode(model::CaptureMode::screen);
    record();
    settle();
    EXPECT_EQ(app.screen(), "confirming");
    EXPECT_EQ(window().grabWindow().pixelColor(window().width() / 2, 100), QColor(200, 200, 200));
    recording.preparation().setCountdown(3);
    click("chooseAgain");
    runTasks();
    EXPECT_EQ(text("chosenText"), "3");
    key(Qt::Key_Escape);
    EXPECT_TRUE(shows("record"));
}

TEST_F(MainWindowTest, WaitsForPermissionAndShowsTheControlsOnceItIsGranted) {
    granted = false;
    permission.setScreenRecordingGranted(false);
    showWindow();
    EXPECT_EQ(item("screen").property("item").value<QQuickItem*>()->property("text").toString(),
              "Waiting for permission...");
    granted = true;
    timers.advance(std::chrono::seconds(2));
    settle();
    EXPECT_TRUE(shows("record"));
}

TEST_F(MainWindowTest, AnErrorIsShownWithItsAdviceUntilItIsDismissed) {
    showWindow();
    for (const auto dismiss : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space, Qt::Key_unknown}) {
        state.setError("Display not found", Kind::captureStartFailed);
        settle();
        const model::VantroError error(Kind::captureStartFailed, "Display not found");
        auto& card = item("alertCard");
        auto* told = QAccessible::queryAccessibleInterface(&item("alertBox"));
        EXPECT_EQ(told->role(), QAccessible::AlertMessage);
        EXPECT_EQ(card.property("text").toString().toStdString(), error.description());
        EXPECT_EQ(card.property("detail").toString().toStdString(), error.recoverySuggestion());
        EXPECT_GE(window().height(), 140) << "the window makes room for the message";
        key(Qt::Key_Tab);
        dismiss == Qt::Key_unknown ? click("acceptButton") : key(dismiss);
        EXPECT_FALSE(state.showError());
        EXPECT_FALSE(shows("alertCard"));
    }
    EXPECT_EQ(window().size(), QSize(340, 120));
    EXPECT_TRUE(item("captureModes").hasActiveFocus()) << "the keyboard is back on the screen";
}

TEST_F(MainWindowTest, NothingBehindAMessageCanBeDone) {
    showWindow();
    const auto press = [this] {
        for (const auto* action : {"record", "stop", "openProject", "edit", "write"})
            EXPECT_FALSE(guard.property(action).toBool()) << action;
        for (const auto letter : {Qt::Key_R, Qt::Key_O, Qt::Key_N, Qt::Key_E, Qt::Key_S})
            for (const auto& modifiers : {Qt::KeyboardModifiers(Qt::ControlModifier),
                                          Qt::ControlModifier | Qt::ShiftModifier})
                key(letter, modifiers);
    };
    state.setCaptureMode(model::CaptureMode::screen);
    state.setError("x", Kind::captureStartFailed);
    press();
    EXPECT_EQ(state.phase(), app::AppPhase::idle());
    state.setShowError(false);

    record();
    app.mayClose();
    press();
    EXPECT_FALSE(app.stopping());
    app.keepRecording();
    recording.stopRecording();
    runTasks();

    click("export");
    state.setError("x", Kind::exportFailed);
    press();
    click("exportNow"); // the popover lies beneath
    EXPECT_FALSE(panels.kind) << "no panel was opened";
    EXPECT_TRUE(state.metadata()) << "the edit is still there";
}

TEST_F(MainWindowTest, ClosingFinishesTheFileBeforeItQuitsAndAFailureIsShownInstead) {
    showWindow();
    int quits = 0;
    QObject::connect(&app, &MainModel::quitReady, [&] { ++quits; });
    record();
    platform.next->stopFailure = model::VantroError(Kind::assetWriterFailed, "disk full");
    app.stopAndQuit();
    runTasks();
    EXPECT_EQ(quits, 0);
    EXPECT_TRUE(shows("alertCard"));
    key(Qt::Key_Return);

    platform.next->stopFailure.reset();
    record();
    key(Qt::Key_Q, Qt::ControlModifier);
    key(Qt::Key_Escape);
    EXPECT_EQ(state.phase(), app::AppPhase::recording()) << "taken back";
    window().close();
    settle();
    key(Qt::Key_Return);
    EXPECT_TRUE(app.stopping());
    EXPECT_EQ(quits, 0);
    runTasks();
    EXPECT_EQ(quits, 1);
    key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(quits, 2) << "at once when nothing is recorded";
    EXPECT_FALSE(window().isVisible());
}

TEST_F(MainWindowTest, PausesAndResumesByButtonAndKeyAndStaysAsLargeAsItIs) {
    state.setCaptureMode(model::CaptureMode::screen);
    showWindow();
    key(Qt::Key_R, Qt::ControlModifier);
    runTasks();
    const auto size = window().size();
    const auto expectPaused = [&](bool isPaused) {
        settle();
        EXPECT_EQ(platform.next->recorderStatus.isPaused, isPaused);
        EXPECT_EQ(shows("paused"), isPaused);
        EXPECT_EQ(window().size(), size);
        auto* told = QAccessible::queryAccessibleInterface(&item("pause"));
        EXPECT_EQ(told->text(QAccessible::Name), isPaused ? "Resume (Ctrl+P)" : "Pause (Ctrl+P)");
    };
    expectPaused(false);
    click("pause");
    expectPaused(true);
    key(Qt::Key_P, Qt::ControlModifier);
    expectPaused(false);
    window().close(); // asks
    settle();
    key(Qt::Key_P, Qt::ControlModifier);
    app.keepRecording();
    expectPaused(false);
    key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(item("pause").isEnabled());
}

TEST_F(MainWindowTest, AButtonThatWasClickedLeavesTheKeyboardWhereItWas) {
    showWindow();
    showEditor();
    click("saveProject");
    panels.answer({});
    settle();
    key(Qt::Key_Space);
    EXPECT_FALSE(panels.kind) << "the panel is not opened again";
}

} // namespace
} // namespace vantro::window
