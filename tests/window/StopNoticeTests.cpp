#include "app/flows/RecordingFlow.h"
#include "app/flows/ScriptedServices.h"
#include "window/PrivateBus.h"
#include "window/ScriptedNotifications.h"
#include "window/platform/StopNotice.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QTest>

namespace vantro::window {
namespace {

class StopNoticeTest : public testing::Test {
  protected:
    StopNoticeTest() { service.serve(desktop); }
    ~StopNoticeTest() override {
        for (const auto* name : {"desktop", "program"})
            QDBusConnection::disconnectFromBus(QString::fromLatin1(name));
    }
    bool isShown() {
        return QTest::qWaitFor([&] { return !service.shown.member().isEmpty(); });
    }
    void record() {
        state.setCaptureMode(model::CaptureMode::screen);
        flow.preparation().begin();
        tasks.runAll();
    }
    void answer(uint number) { desktop.send(service.shown.createReply(number)); }
    void press(uint number, const QString& action = QStringLiteral("stop")) {
        service.press(desktop, number, action);
    }

    test::PrivateBus bus;
    QDBusConnection desktop = bus.connect(QStringLiteral("desktop"));
    test::ScriptedNotifications service;
    app::AppState state{1};
    test::ScriptedPlatform platform;
    test::ScriptedOverlays overlays;
    test::ManualTimers timers;
    test::ManualTasks tasks;
    app::flows::RecordingFlow flow{state, {platform, overlays, timers, tasks}};
    bool hasTray = false;
    StopNotice notice{state, flow, bus.connect(QStringLiteral("program")),
                      [this] { return hasTray; }};
};

TEST_F(StopNoticeTest, PausesAndResumesTheRecordingAndSaysWhichIsNext) {
    record();
    ASSERT_TRUE(isShown());
    flow.pause(); // while the first one is on its way
    answer(7);
    const auto offers = [this](const char* text) {
        return QTest::qWaitFor([&] {
            return service.shown.arguments().value(5).toStringList().contains(
                QString::fromLatin1(text));
        });
    };
    EXPECT_TRUE(offers("Resume Recording"));
    EXPECT_EQ(service.shown.arguments().at(1).toUInt(), 7U) << "in place of the other";
    answer(7);
    press(7, "pause");
    EXPECT_TRUE(offers("Pause Recording"));
    EXPECT_FALSE(flow.isPaused());
}

TEST_F(StopNoticeTest, StopsTheRecordingAndGoesWithIt) {
    record();
    ASSERT_TRUE(isShown());
    const auto hints = qdbus_cast<QVariantMap>(service.shown.arguments().at(6));
    EXPECT_EQ(hints.value(QStringLiteral("urgency")).toInt(), 0) << "no banner in the film";
    answer(7);
    press(8); // of another program
    press(7);
    EXPECT_TRUE(QTest::qWaitFor([&] { return flow.isStopping(); }));
    state.setPhase(app::AppPhase::idle());
    EXPECT_TRUE(QTest::qWaitFor([&] { return service.closed == 7; }));
}

TEST_F(StopNoticeTest, ThatIsShownTooLateIsClosedAtOnce) {
    state.setPhase(app::AppPhase::recording());
    ASSERT_TRUE(isShown());
    state.setPhase(app::AppPhase::idle());
    answer(7);
    EXPECT_TRUE(QTest::qWaitFor([&] { return service.closed == 7; }));
}

TEST_F(StopNoticeTest, IsNotNeededWhereThereIsATray) {
    hasTray = true;
    state.setPhase(app::AppPhase::recording());
    QDBusConnection(QStringLiteral("program")).interface()->registeredServiceNames();
    QCoreApplication::processEvents(); // a question would have come by now
    EXPECT_TRUE(service.shown.member().isEmpty());
}

} // namespace
} // namespace vantro::window
