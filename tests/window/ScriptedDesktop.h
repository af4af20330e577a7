#pragma once

#include "support/SessionBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QMap>
#include <QTest>

namespace vantro::test {

/// Stands for a service of a desktop, on a session bus of the test's own: notes what it is called
/// for, and answers when the test does.
class ScriptedDesktop : public QDBusVirtualObject {
  public:
    ~ScriptedDesktop() override {
        for (const auto* name : {"desktop", "program"})
            QDBusConnection::disconnectFromBus(QString::fromLatin1(name));
    }
    void serve(const char* service) {
        m_desktop.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
        m_desktop.registerService(QString::fromLatin1(service));
    }
    /// The bus, for the program under test.
    QDBusConnection program() const { return m_program; }

    /// The last call of each method.
    QMap<QString, QDBusMessage> calls;
    bool isCalled(const char* method) {
        return QTest::qWaitFor([&] { return calls.contains(QString::fromLatin1(method)); });
    }
    void answer(const char* method, const QVariantList& values = {}) {
        m_desktop.send(calls[QString::fromLatin1(method)].createReply(values));
    }
    /// What is on its way from either side arrives.
    void settle() {
        m_program.interface()->registeredServiceNames();
        QCoreApplication::processEvents();
    }
    /// As the user does with a notification.
    void press(uint number, const char* action) {
        auto signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/Notifications"),
                                                 QStringLiteral("org.freedesktop.Notifications"),
                                                 QStringLiteral("ActionInvoked"));
        signal << number << QString::fromLatin1(action);
        m_desktop.send(signal);
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        calls[message.member()] = message;
        return true;
    }

  private:
    QDBusConnection connect(const char* name) const {
        return QDBusConnection::connectToBus(QString::fromStdString(m_bus.address()),
                                             QString::fromLatin1(name));
    }

    SessionBus m_bus;
    QDBusConnection m_desktop = connect("desktop");
    QDBusConnection m_program = connect("program");
};

} // namespace vantro::test
