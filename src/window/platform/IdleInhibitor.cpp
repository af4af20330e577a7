#include "window/platform/IdleInhibitor.h"

#include "app/state/AppState.h"
#include "base/Log.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace vantro::window {
namespace {

const QString screenSaver = QStringLiteral("org.freedesktop.ScreenSaver");
const QString screenSaverPath = QStringLiteral("/org/freedesktop/ScreenSaver");
const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
constexpr uint suspendAndIdle = 4 | 8; // of the portal's flags

QDBusMessage callOf(const QString& service, const QString& path, const QString& interface,
                    const QString& method) {
    return QDBusMessage::createMethodCall(service, path, interface, method);
}

QString reason() {
    return QObject::tr("Recording the screen");
}

} // namespace

IdleInhibitor::IdleInhibitor(app::AppState& state, QDBusConnection bus)
    : m_state(state), m_bus(std::move(bus)) {
    connect(&state, &app::AppState::phaseChanged, this, &IdleInhibitor::update);
}

void IdleInhibitor::update() {
    const bool wanted = m_state.phase() == app::AppPhase::recording();
    if (wanted == m_wanted || !m_bus.isConnected())
        return;
    m_wanted = wanted;
    if (wanted) {
        ++m_request;
        askPortal();
    } else if (const auto release = std::exchange(m_release, {})) {
        m_bus.asyncCall(*release);
    }
}

void IdleInhibitor::askPortal() {
    auto request = callOf(portal, portalPath, QStringLiteral("org.freedesktop.portal.Inhibit"),
                          QStringLiteral("Inhibit"));
    request << QString() << suspendAndIdle << QVariantMap{{QStringLiteral("reason"), reason()}};
    ask(
        request,
        [](const QVariant& handle) {
            return callOf(portal, handle.value<QDBusObjectPath>().path(),
                          QStringLiteral("org.freedesktop.portal.Request"),
                          QStringLiteral("Close"));
        },
        [this] { askScreenSaver(); });
}

void IdleInhibitor::askScreenSaver() {
    auto request = callOf(screenSaver, screenSaverPath, screenSaver, QStringLiteral("Inhibit"));
    request << QStringLiteral("Vantro") << reason();
    ask(
        request,
        [](const QVariant& cookie) {
            auto release =
                callOf(screenSaver, screenSaverPath, screenSaver, QStringLiteral("UnInhibit"));
            release << cookie;
            return release;
        },
        [] { base::logInfo("nothing keeps the screen from being blanked while recording"); });
}

void IdleInhibitor::ask(const QDBusMessage& request,
                        const std::function<QDBusMessage(const QVariant& answer)>& releaseOf,
                        const std::function<void()>& refused) {
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(request), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, releaseOf, refused, asked = m_request] {
                watcher->deleteLater();
                const auto answer = watcher->reply();
                if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) {
                    if (m_wanted && asked == m_request)
                        refused();
                    return;
                }
                const auto release = releaseOf(answer.arguments().front());
                if (m_wanted && asked == m_request)
                    m_release = release;
                else
                    m_bus.asyncCall(release); // the recording has ended meanwhile
            });
}

} // namespace vantro::window
