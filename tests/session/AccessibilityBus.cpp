#include "session/AccessibilityBus.h"

#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <stdexcept>

namespace vantro::test {
namespace {

const QString connectionName = QStringLiteral("screen reader");

/// A bus that starts the accessibility service and nothing else of what is installed.
QString busConfiguration(const QString& folder) {
    QDir().mkpath(folder + QStringLiteral("/services"));
    QFile::link(QStringLiteral("/usr/share/dbus-1/services/org.a11y.Bus.service"),
                folder + QStringLiteral("/services/org.a11y.Bus.service"));
    const QString path = folder + QStringLiteral("/bus.conf");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("no configuration of the session bus");
    file.write(QStringLiteral(R"(<busconfig><type>session</type><listen>unix:dir=%1</listen>
<servicedir>%1/services</servicedir><policy context="default"><allow send_destination="*"/>
<allow receive_sender="*"/><allow own="*"/></policy></busconfig>)")
                   .arg(folder)
                   .toUtf8());
    return path;
}

void show(const Accessible& shown, const std::string& indent, std::string& text) {
    text += indent + shown.role().toStdString() + " \"" + shown.name().toStdString() + "\"\n";
    for (const auto& child : shown.children())
        if (!child.place().isEmpty())
            show(child, indent + "  ", text);
}

} // namespace

AccessibilityBus::AccessibilityBus(DesktopSession& desktop) {
    const auto folder = QString::fromStdString((desktop.home() / "bus").string());
    QDir().mkpath(folder);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    auto environment = desktop.environment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder);
    m_daemon.setProcessEnvironment(environment);
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--config-file=") + busConfiguration(folder),
                    QStringLiteral("--nofork"), QStringLiteral("--nosyslog"),
                    QStringLiteral("--print-address")});
    while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead()) {
    }
    const auto address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    const QString asking = QStringLiteral("asking");
    const auto reply = QDBusConnection::connectToBus(address, asking)
                           .call(QDBusMessage::createMethodCall(
                               QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                               QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress")));
    QDBusConnection::disconnectFromBus(asking);
    if (reply.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error("no accessibility bus: " + reply.errorMessage().toStdString());
    m_connection =
        QDBusConnection::connectToBus(reply.arguments().at(0).toString(), connectionName);
    desktop.setVariable(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);
    desktop.setVariable(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
}

AccessibilityBus::~AccessibilityBus() {
    m_connection = QDBusConnection{QString()};
    QDBusConnection::disconnectFromBus(connectionName);
    m_daemon.terminate(); // the services end with it
    m_daemon.waitForFinished();
}

Accessible AccessibilityBus::root() const {
    return {m_connection, QStringLiteral("org.a11y.atspi.Registry"),
            QStringLiteral("/org/a11y/atspi/accessible/root")};
}

Accessible AccessibilityBus::find(const QString& role, const QRegularExpression& name) const {
    for (const auto& program : root().children())
        if (auto found = program.find(role, name))
            return found;
    return {};
}

std::string AccessibilityBus::everything() const {
    std::string text;
    for (const auto& program : root().children())
        show(program, "", text);
    return text;
}

} // namespace vantro::test
