#include "app/flows/RecordingFlow.h"
#include "app/flows/ScriptedServices.h"
#include "window/ScriptedDesktop.h"
#include "window/platform/StopNotice.h"

#include <QDBusArgument>

namespace vantro::window {
namespace {

class StopNoticeTest : public testing::Test {
  protected:
    StopNoticeTest() { desktop.serve("org.freedesktop.Notifications"); }
    void record() {
        state.setCaptureMode(model::CaptureMode::screen);
        flow.preparation().begin();
        tasks.runAll();
    }
    bool isClosed(uint number) {
        return desktop.isCalled("CloseNotification") &&
               desktop.calls["CloseNotification"].arguments().value(0).toUInt() == number;
    }

    test::ScriptedDesktop desktop;
    app::AppState state{1};
    test::ScriptedPlatform platform;
    test::ScriptedOverlays overlays;
    test::ManualTimers timers;
    test::ManualTasks tasks;
    app::flows::RecordingFlow flow{state, {platform, overlays, timers, tasks}};
    bool hasTray = false;
    StopNotice notice{state, flow, desktop.program(), [this] { return hasTray; }};
};

TEST_F(StopNoticeTest, PausesAndResumesTheRecordingAndSaysWhichIsNext) {
    record();
    ASSERT_TRUE(desktop.isCalled("Notify"));
    flow.pause(); // while the first one is on its way
    desktop.answer("Notify", {7U});
    const auto offers = [this](const char* text) {
        return QTest::qWaitFor([&] {
            return desktop.calls["Notify"].arguments().value(5).toStringList().contains(
                QString::fromLatin1(text));
        });
    };
    EXPECT_TRUE(offers("Resume Recording"));
    EXPECT_EQ(desktop.calls["Notify"].arguments().at(1).toUInt(), 7U) << "in place of the other";
    desktop.answer("Notify", {7U});
    desktop.press(7, "pause");
    EXPECT_TRUE(offers("Pause Recording"));
    EXPECT_FALSE(flow.isPaused());
}

TEST_F(StopNoticeTest, StopsTheRecordingAndGoesWithIt) {
    record();
    ASSERT_TRUE(desktop.isCalled("Notify"));
    const auto hints = qdbus_cast<QVariantMap>(desktop.calls["Notify"].arguments().at(6));
    EXPECT_EQ(hints.value(QStringLiteral("urgency")).toInt(), 0) << "no banner in the film";
    desktop.answer("Notify", {7U});
    desktop.press(8, "stop"); // of another program
    desktop.press(7, "stop");
    EXPECT_TRUE(QTest::qWaitFor([&] { return flow.isStopping(); }));
    state.setPhase(app::AppPhase::idle());
    EXPECT_TRUE(isClosed(7));
}

TEST_F(StopNoticeTest, ThatIsShownTooLateIsClosedAtOnce) {
    state.setPhase(app::AppPhase::recording());
    ASSERT_TRUE(desktop.isCalled("Notify"));
    state.setPhase(app::AppPhase::idle());
    desktop.answer("Notify", {7U});
    EXPECT_TRUE(isClosed(7));
}

TEST_F(StopNoticeTest, IsNotNeededWhereThereIsATray) {
    hasTray = true;
    state.setPhase(app::AppPhase::recording());
    desktop.settle(); // a question would have come by now
    EXPECT_TRUE(desktop.calls.isEmpty());
}

} // namespace
} // namespace vantro::window
