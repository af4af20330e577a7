#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

namespace vantro::test {

/// Stands for a desktop's notification service: keeps what it is asked to show and the number of
/// what was closed; answers when the test does.
class ScriptedNotifications : public QDBusVirtualObject {
  public:
    QDBusMessage shown;
    uint closed = 0;

    void serve(QDBusConnection& desktop) {
        desktop.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
        desktop.registerService(QStringLiteral("org.freedesktop.Notifications"));
    }
    /// As the user does.
    static void press(QDBusConnection& desktop, uint number, const QString& action) {
        auto signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/Notifications"),
                                                 QStringLiteral("org.freedesktop.Notifications"),
                                                 QStringLiteral("ActionInvoked"));
        signal << number << action;
        desktop.send(signal);
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        if (message.member() == QStringLiteral("Notify"))
            shown = message;
        else
            closed = message.arguments().value(0).toUInt();
        return true;
    }
};

} // namespace vantro::test
