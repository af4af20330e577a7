#include "app/state/AppState.h"
#include "window/platform/IdleInhibitor.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

namespace vantro::window {
namespace {

/// A session bus of the test's own.
class PrivateBus {
  public:
    PrivateBus() {
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {"--session", "--nofork", "--nosyslog", "--print-address"});
        while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead()) {
        }
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }
    ~PrivateBus() {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    QDBusConnection connect(const QString& name) const {
        return QDBusConnection::connectToBus(m_address, name);
    }

  private:
    QProcess m_daemon;
    QString m_address;
};

/// Writes down every call and answers an Inhibit with `handle`, at once or when it is told to.
class ScriptedService : public QDBusVirtualObject {
  public:
    explicit ScriptedService(QVariant handle) : m_handle(std::move(handle)) {}

    bool answersAtOnce = true;
    QStringList calls;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const auto arguments = message.arguments();
        calls.append(message.member() == QStringLiteral("UnInhibit")
                         ? message.member() + u' ' + arguments.value(0).toString()
                         : message.member());
        if (message.member() == QStringLiteral("Close"))
            calls.back() += u' ' + message.path();
        m_asked = message;
        m_connection = connection.name();
        if (answersAtOnce)
            answer();
        return true;
    }
    void answer() {
        QDBusConnection(m_connection).send(m_asked.createReply(QVariantList{m_handle}));
    }

  private:
    QVariant m_handle;
    QDBusMessage m_asked;
    QString m_connection;
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
    bool heard(const QStringList& expected) {
        return QTest::qWaitFor([&] { return service.calls == expected; });
    }

    PrivateBus bus;
    ScriptedService service{GetParam().handle};
    app::AppState state{1};
    IdleInhibitor inhibitor{state, bus.connect(QStringLiteral("program"))};
};

TEST_P(IdleInhibitorTest, KeepsTheScreenAwakeForAsLongAsARecordingRuns) {
    state.setPhase(app::AppPhase::recording());
    EXPECT_TRUE(heard({"Inhibit"}));
    // The answer has come before that of a later question.
    QDBusConnection(QStringLiteral("program")).interface()->registeredServiceNames();
    QCoreApplication::processEvents();
    state.setPhase(app::AppPhase::previewing());
    EXPECT_TRUE(heard({"Inhibit", GetParam().release}));
}

TEST_P(IdleInhibitorTest, GivesBackWhatIsGrantedAfterTheRecording) {
    service.answersAtOnce = false;
    state.setPhase(app::AppPhase::recording());
    EXPECT_TRUE(heard({"Inhibit"}));
    state.setPhase(app::AppPhase::idle());
    service.answer();
    EXPECT_TRUE(heard({"Inhibit", GetParam().release}));
}

INSTANTIATE_TEST_SUITE_P(
    Desktops, IdleInhibitorTest,
    testing::Values(Desktop{"ScreenSaver", "org.freedesktop.ScreenSaver", 4711U, "UnInhibit 4711"},
                    Desktop{"Portal", "org.freedesktop.portal.Desktop",
                            QVariant::fromValue(QDBusObjectPath(QStringLiteral("/request/1"))),
                            "Close /request/1"}),
    [](const auto& desktop) { return desktop.param.name; });

} // namespace
} // namespace vantro::window
