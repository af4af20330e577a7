#include "window/platform/StopNotice.h"

#include "app/flows/RecordingFlow.h"
#include "app/state/AppState.h"
#include "base/Log.h"
#include "capture/RecordingTarget.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QVariantMap>
#include <utility>

namespace vantro::window {
namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString stopAction = QStringLiteral("stop");

QDBusMessage callOf(const QString& method) {
    return QDBusMessage::createMethodCall(service, path, service, method);
}

} // namespace

StopNotice::StopNotice(app::AppState& state, app::flows::RecordingFlow& flow, QDBusConnection bus,
                       std::function<bool()> hasTray)
    : m_state(state), m_flow(flow), m_bus(std::move(bus)), m_hasTray(std::move(hasTray)) {
    connect(&state, &app::AppState::phaseChanged, this, &StopNotice::update);
    m_bus.connect(service, path, service, QStringLiteral("ActionInvoked"), this,
                  SLOT(chosen(uint, QString)));
}

bool StopNotice::isPossible(const QDBusConnection& bus) {
    auto* names = bus.interface();
    if (names == nullptr)
        return false;
    const QDBusReply<QStringList> startable = names->activatableServiceNames();
    return names->isServiceRegistered(service) || startable.value().contains(service);
}

StopNotice::~StopNotice() {
    if (m_notice != 0)
        close(m_notice);
}

void StopNotice::update() {
    const bool isWanted = m_state.phase() == app::AppPhase::recording() && !m_hasTray();
    if (isWanted == m_isWanted || !m_bus.isConnected())
        return;
    m_isWanted = isWanted;
    ++m_request;
    if (isWanted)
        show();
    else if (m_notice != 0)
        close(std::exchange(m_notice, 0));
}

void StopNotice::show() {
    // A low urgency goes into the list without a banner, which would be in the film.
    constexpr uchar lowUrgency = 0;
    constexpr uint replacesNone = 0;
    constexpr int staysUntilClosed = 0;
    auto request = callOf(QStringLiteral("Notify"));
    request << QStringLiteral("Vantro") << replacesNone
            << QString::fromLatin1(capture::ownBundleIdentifier) << tr("Recording the screen")
            << QString() << QStringList{stopAction, tr("Stop Recording")}
            << QVariantMap{{QStringLiteral("urgency"), QVariant::fromValue(lowUrgency)},
                           {QStringLiteral("resident"), true},
                           {QStringLiteral("desktop-entry"),
                            QString::fromLatin1(capture::ownBundleIdentifier)}}
            << staysUntilClosed;
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(request), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, asked = m_request] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> answer = *watcher;
        if (answer.isError())
            base::logInfo("No notification with a Stop button: {}",
                          answer.error().message().toStdString());
        else if (asked == m_request)
            m_notice = answer.value();
        else
            close(answer.value()); // the recording has ended meanwhile
    });
}

void StopNotice::close(uint notice) {
    auto request = callOf(QStringLiteral("CloseNotification"));
    request << notice;
    m_bus.asyncCall(request);
}

void StopNotice::chosen(uint notice, const QString& action) {
    if (notice == m_notice && notice != 0 && action == stopAction)
        m_flow.stopRecording();
}

} // namespace vantro::window
