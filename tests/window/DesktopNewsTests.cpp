#include "window/PrivateBus.h"
#include "window/ScriptedNotifications.h"
#include "window/WindowFixture.h"
#include "window/platform/DesktopNews.h"
#include "window/platform/Notifications.h"

#include <QTest>

namespace vantro::window {
namespace {

using namespace std::chrono_literals;

class DesktopNewsTest : public test::WindowFixture {
  protected:
    ~DesktopNewsTest() override {
        for (const auto* name : {"desktop", "program"})
            QDBusConnection::disconnectFromBus(QString::fromLatin1(name));
    }
    /// "TITLE: TEXT [BUTTON]" of the next one.
    std::string next() {
        if (!QTest::qWaitFor([&] { return !service.shown.member().isEmpty(); }))
            return {};
        const auto asked = std::exchange(service.shown, {});
        desktop.send(asked.createReply(7U));
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

    test::PrivateBus bus;
    QDBusConnection desktop = bus.connect(QStringLiteral("desktop"));
    test::ScriptedNotifications service;
    bool isLookedAt = false;
    Notifications notifications{bus.connect(QStringLiteral("program"))};
    DesktopNews news{flows,
                     notifications,
                     {.isLookedAt = [this] { return isLookedAt; },
                      .showInFolder = [this](const QString& file) { shownInFolder = file; }}};
};

TEST_F(DesktopNewsTest, TellOfAnExportThatNobodyWaitsForAndShowTheFilm) {
    showEditor();
    exportFilm(); // no service yet: nothing, and no complaint
    isLookedAt = true;
    service.serve(desktop);
    exportFilm();
    isLookedAt = false;
    exportFilm();
    EXPECT_EQ(next(), "The film is ready: holiday.mp4 [Show in Folder]");
    EXPECT_TRUE(QTest::qWaitFor([&] { // until the answer has arrived
        test::ScriptedNotifications::press(desktop, 7, QStringLiteral("button"));
        return !shownInFolder.isEmpty();
    }));
    EXPECT_EQ(shownInFolder, "/films/holiday.mp4");
    exportScript = [](const auto&) { throw std::runtime_error("a < b"); };
    exportFilm();
    EXPECT_EQ(next(), "The export has failed: a &lt; b");
}

TEST_F(DesktopNewsTest, TellWhyARecordingHasEnded) {
    service.serve(desktop);
    showWindow();
    record();
    timers.advance(600s);
    EXPECT_EQ(next(), "Still recording: Nothing has moved for ten minutes.");
    platform.next->recorderStatus.condition = capture::RecordingCondition::userStopped;
    timers.advance(1s);
    EXPECT_EQ(next(), "The recording has ended: The desktop has ended the sharing.");
}

TEST_F(DesktopNewsTest, SayThatTheDiskFillsAsTheWindowDoesWhichThenTellsWhyItStopped) {
    service.serve(desktop);
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
    keepPicture(QStringLiteral("disk-nearly-full"));
    disk->free = 100;
    timers.advance(1s);
    EXPECT_EQ(next(), "The recording has ended: The disk is nearly full.");
    runTasks();
    settle();
    EXPECT_EQ(guard.message(), "stopped");
    keepPicture(QStringLiteral("disk-stopped"));
    key(Qt::Key_Return);
    EXPECT_EQ(guard.message(), "");
}

} // namespace
} // namespace vantro::window
