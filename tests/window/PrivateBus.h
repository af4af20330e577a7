#pragma once

#include <QDBusConnection>
#include <QProcess>

namespace vantro::test {

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

} // namespace vantro::test
