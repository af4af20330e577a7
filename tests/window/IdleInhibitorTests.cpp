#include "app/state/AppState.h"
#include "window/PrivateBus.h"
#include "window/platform/IdleInhibitor.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QTest>

#include <gtest/gtest.h>

namespace vantro::window {
namespace {

/// Keeps the question and writes down what is called afterwards, with its number or path.
class ScriptedService : public QDBusVirtualObject {
  public:
    QDBusMessage asked;
    QString released;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        const auto handle = message.arguments().value(0).toUInt();
        if (message.member() == QStringLiteral("Inhibit"))
            asked = message;
        else
            released = message.member() + (handle > 0 ? QString::number(handle) : message.path());
        return true;
    }
};

struct Desktop {
    const char* name;
    const char* service;
    QVariant handle;
    const char* release;
};

class IdleInhibitorTest : public testing::TestWithParam<Desktop> {
  protected:
    IdleInhibitorTest() {
        auto desktop = bus.connect(QStringLiteral("desktop"));
        desktop.registerVirtualObject(QStringLiteral("/"), &service, QDBusConnection::SubPath);
        desktop.registerService(QString::fromLatin1(GetParam().service));
    }
    ~IdleInhibitorTest() override {
        for (const auto* name : {"desktop", "program"})
            QDBusConnection::disconnectFromBus(QString::fromLatin1(name));
    }

    test::PrivateBus bus;
    ScriptedService service;
    app::AppState state{1};
    IdleInhibitor inhibitor{state, bus.connect(QStringLiteral("program"))};
};

TEST_P(IdleInhibitorTest, KeepsTheScreenAwakeForAsLongAsARecordingRuns) {
    for (const bool isGrantedLate : {false, true}) {
        service.asked = {};
        service.released.clear();
        state.setPhase(app::AppPhase::recording());
        ASSERT_TRUE(QTest::qWaitFor([&] { return !service.asked.member().isEmpty(); }));
        if (isGrantedLate)
            state.setPhase(app::AppPhase::idle());
        QDBusConnection(QStringLiteral("desktop"))
            .send(service.asked.createReply(QVariantList{GetParam().handle}));
        // The answer has come before that of a later question.
        QDBusConnection(QStringLiteral("program")).interface()->registeredServiceNames();
        QCoreApplication::processEvents();
        state.setPhase(app::AppPhase::idle());
        EXPECT_TRUE(QTest::qWaitFor([&] { return service.released == GetParam().release; }));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Desktops, IdleInhibitorTest,
    testing::Values(Desktop{"ScreenSaver", "org.freedesktop.ScreenSaver", 4711U, "UnInhibit4711"},
                    Desktop{"Portal", "org.freedesktop.portal.Desktop",
                            QVariant::fromValue(QDBusObjectPath(QStringLiteral("/request/1"))),
                            "Close/request/1"}),
    [](const auto& desktop) { return desktop.param.name; });

} // namespace
} // namespace vantro::window
