#include "session/Accessible.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace vantro::test {
namespace {

/// Bits of the state that AT-SPI tells.
enum State { checked = 4, focused = 12 };

QDBusArgument argumentOf(const QDBusMessage& reply) {
    return reply.arguments().value(0).value<QDBusArgument>();
}

} // namespace

QDBusMessage Accessible::call(const char* interface, const char* method,
                              const QVariantList& arguments) const {
    const auto full = QString::fromLatin1(interface);
    auto message = QDBusMessage::createMethodCall(
        m_program, m_path, full.contains(u'.') ? full : QStringLiteral("org.a11y.atspi.") + full,
        QString::fromLatin1(method));
    message.setArguments(arguments);
    return m_connection.call(message);
}

QVariant Accessible::property(const char* interface, const char* name) const {
    const auto reply = call("org.freedesktop.DBus.Properties", "Get",
                            {QStringLiteral("org.a11y.atspi.") + QString::fromLatin1(interface),
                             QString::fromLatin1(name)});
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

QString Accessible::name() const {
    return property("Accessible", "Name").toString();
}

QString Accessible::role() const {
    return call("Accessible", "GetRoleName").arguments().value(0).toString();
}

QString Accessible::text() const {
    return call("Text", "GetText", {0, -1}).arguments().value(0).toString();
}

QRect Accessible::place() const {
    const auto reply = call("Component", "GetExtents", {0U});
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    if (reply.type() == QDBusMessage::ReplyMessage) {
        const auto rect = argumentOf(reply);
        rect.beginStructure();
        rect >> x >> y >> width >> height;
        rect.endStructure();
    }
    return {x, y, width, height};
}

bool Accessible::is(int state) const {
    const auto reply = call("Accessible", "GetState");
    return reply.type() == QDBusMessage::ReplyMessage &&
           (qdbus_cast<QList<uint>>(argumentOf(reply)).value(0) >> state & 1U) != 0;
}

bool Accessible::isFocused() const {
    return is(State::focused);
}

bool Accessible::isChecked() const {
    return is(State::checked);
}

double Accessible::value() const {
    return property("Value", "CurrentValue").toDouble();
}

double Accessible::largest() const {
    return property("Value", "MaximumValue").toDouble();
}

std::vector<Accessible> Accessible::children() const {
    std::vector<Accessible> found;
    const auto reply = call("Accessible", "GetChildren");
    if (reply.type() != QDBusMessage::ReplyMessage)
        return found;
    const auto list = argumentOf(reply);
    list.beginArray();
    while (!list.atEnd()) {
        QString program;
        QDBusObjectPath path;
        list.beginStructure();
        list >> program >> path;
        list.endStructure();
        found.emplace_back(m_connection, program, path.path());
    }
    list.endArray();
    return found;
}

Accessible Accessible::find(const QString& role, const QRegularExpression& name) const {
    for (const auto& child : children()) {
        if (name.match(child.name()).hasMatch() && child.role() == role && !child.place().isEmpty())
            return child;
        if (auto found = child.find(role, name))
            return found;
    }
    return {};
}

bool Accessible::act(const QString& action) const {
    const auto reply = call("Action", "GetActions");
    if (reply.type() != QDBusMessage::ReplyMessage)
        return false;
    const auto list = argumentOf(reply);
    list.beginArray();
    for (int index = 0; !list.atEnd(); ++index) {
        QString name;
        QString about;
        QString keys;
        list.beginStructure();
        list >> name >> about >> keys;
        list.endStructure();
        if (name == action)
            return call("Action", "DoAction", {index}).arguments().value(0).toBool();
    }
    return false;
}

void Accessible::setValue(double value) const {
    call("org.freedesktop.DBus.Properties", "Set",
         {QStringLiteral("org.a11y.atspi.Value"), QStringLiteral("CurrentValue"),
          QVariant::fromValue(QDBusVariant(value))});
}

void Accessible::setText(const QString& text) const {
    call("EditableText", "SetTextContents", {text});
}

void Accessible::focus() const {
    call("Component", "GrabFocus");
}

} // namespace vantro::test
