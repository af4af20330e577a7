#include "window/platform/Notifications.h"

#include "base/Log.h"
#include "capture/RecordingTarget.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>
#include <utility>

namespace vantro::window {
namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString buttonAction = QStringLiteral("button");
constexpr std::size_t mostActions = 8;

} // namespace

Notifications::Notifications(QDBusConnection bus) : m_bus(std::move(bus)) {
    m_bus.connect(service, path, service, QStringLiteral("ActionInvoked"), this,
                  SLOT(chosen(uint, QString)));
    m_bus.connect(service, path, service, QStringLiteral("NotificationClosed"), this,
                  SLOT(closed(uint, uint)));
}

void Notifications::show(const Notification& notification) {
    if (!m_bus.isConnected())
        return;
    constexpr uint replacesNone = 0;
    constexpr int asLongAsUsual = -1;
    const auto identifier = QString::fromLatin1(capture::ownBundleIdentifier);
    auto request = QDBusMessage::createMethodCall(service, path, service, QStringLiteral("Notify"));
    request << QStringLiteral("Vantro") << replacesNone << identifier << notification.title
            << notification.text.toHtmlEscaped() // which may hold marks
            << (notification.action.isEmpty() ? QStringList()
                                              : QStringList{buttonAction, notification.action})
            << QVariantMap{{QStringLiteral("desktop-entry"), identifier}} << asLongAsUsual;
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(request), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, acted = notification.acted] {
                watcher->deleteLater();
                const QDBusPendingReply<uint> answer = *watcher;
                if (answer.isError())
                    base::logInfo("No notification: {}", answer.error().message().toStdString());
                else if (acted)
                    remember(answer.value(), acted);
            });
}

void Notifications::remember(uint notice, const std::function<void()>& acted) {
    m_actions[notice] = acted;
    if (m_actions.size() > mostActions)
        m_actions.erase(m_actions.begin());
}

void Notifications::chosen(uint notice, const QString& action) {
    const auto found = m_actions.find(notice);
    if (found == m_actions.end() || action != buttonAction)
        return;
    const auto act = found->second;
    m_actions.erase(found);
    act();
}

void Notifications::closed(uint notice, uint /*reason*/) {
    m_actions.erase(notice);
}

} // namespace vantro::window
