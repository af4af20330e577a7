#include "window/ScriptedDesktop.h"
#include "window/WindowFixture.h"
#include "window/platform/DesktopNews.h"
#include "window/platform/Notifications.h"

namespace vantro::window {
namespace {

using namespace std::chrono_literals;

class DesktopNewsTest : public test::WindowFixture {
  protected:
    /// Whether something has been told by now.
    bool isTold() {
        desktop.settle();
        return desktop.calls.contains(QStringLiteral("Notify"));
    }
    /// "TITLE: TEXT [BUTTON]" of the next one.
    std::string next() {
        if (!desktop.isCalled("Notify"))
            return {};
        desktop.answer("Notify", {7U});
        const auto asked = desktop.calls.take(QStringLiteral("Notify"));
        const auto arguments = asked.arguments();
        const auto button = arguments.at(5).toStringList().value(1);
        return (arguments.at(3).toString() + QStringLiteral(": ") + arguments.at(4).toString() +
                (button.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(button)))
            .toStdString();
    }
    void exportFilm() {
        editor.exportRecording(0, 0, 0);
        panels.answer("/films/holiday.mp4");
        runTasks();
    }

    void serve() { desktop.serve("org.freedesktop.Notifications"); }

    test::ScriptedDesktop desktop;
    bool isLookedAt = false;
    Notifications notifications{desktop.program()};
    DesktopNews news{flows,
                     notifications,
                     {.isLookedAt = [this] { return isLookedAt; },
                      .showInFolder = [this](const QString& file) { shownInFolder = file; }}};
};

TEST_F(DesktopNewsTest, TellOfAnExportThatNobodyWaitsForAndShowTheFilm) {
    showEditor();
    exportFilm(); // no service yet: nothing, and no complaint
    desktop.settle();
    isLookedAt = true;
    serve();
    exportFilm();
    isLookedAt = false;
    exportFilm();
    EXPECT_EQ(next(), "The film is ready: holiday.mp4 [Show in Folder]");
    EXPECT_TRUE(QTest::qWaitFor([&] { // until the answer has arrived
        desktop.press(7, "button");
        return !shownInFolder.isEmpty();
    }));
    EXPECT_EQ(shownInFolder, "/films/holiday.mp4");
    exportScript = [](const auto&) { throw std::runtime_error("a < b"); };
    exportFilm();
    EXPECT_EQ(next(), "The export has failed: a &lt; b");
    test::expectError(state, model::VantroError::Kind::exportFailed, "a < b");
    EXPECT_EQ(state.phase(), app::AppPhase::previewing());
}

TEST_F(DesktopNewsTest, TellOnceThatNothingMovesAndAgainAfterSomethingHasAndWhyItEnded) {
    serve();
    showWindow();
    record();
    timers.advance(599s);
    EXPECT_FALSE(isTold());
    for (auto* count : {&platform.next->recorderStatus.framesCaptured,
                        &platform.next->recorderStatus.pointerMoves}) {
        timers.advance(1s);
        EXPECT_EQ(next(), "Still recording: Nothing has moved for ten minutes.");
        timers.advance(3600s);
        ++*count;
        timers.advance(600s);
        EXPECT_FALSE(isTold());
    }
    platform.next->recorderStatus.condition = capture::RecordingCondition::userStopped;
    timers.advance(1s);
    EXPECT_EQ(next(), "The recording has ended: The desktop has ended the sharing.");
}

TEST_F(DesktopNewsTest, SayThatTheDiskFillsAsTheWindowDoesWhichThenTellsWhyItStopped) {
    serve();
    showWindow();
    record();
    disk = app::files::DiskUse{.written = 0, .free = 2100, .reserve = 100};
    timers.advance(1s);
    disk->written = 10;
    timers.advance(10s);
    EXPECT_EQ(app.recordingNote(), "There is room for 33:20.");
    disk->free = 300;
    timers.advance(1s);
    EXPECT_TRUE(next().starts_with("The disk is nearly full: "));
    EXPECT_TRUE(app.recordingNote().startsWith(QStringLiteral("The disk is full in 03:")));
    disk->free = 100;
    timers.advance(1s);
    EXPECT_EQ(next(), "The recording has ended: The disk is nearly full.");
    runTasks();
    settle();
    EXPECT_EQ(guard.message(), "stopped");
    key(Qt::Key_Return);
    EXPECT_EQ(guard.message(), "");
}

} // namespace
} // namespace vantro::window
