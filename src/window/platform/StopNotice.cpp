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
const QString pauseAction = QStringLiteral("pause");

QDBusMessage callOf(const QString& method) {
    return QDBusMessage::createMethodCall(service, path, service, method);
}

} // namespace

StopNotice::StopNotice(app::AppState& state, app::flows::RecordingFlow& flow, QDBusConnection bus,
                       std::function<bool()> hasTray)
    : m_state(state), m_flow(flow), m_bus(std::move(bus)), m_hasTray(std::move(hasTray)) {
    connect(&state, &app::AppState::phaseChanged, this, &StopNotice::update);
    connect(&flow, &app::flows::RecordingFlow::pausedChanged, this, [this] {
        if (m_notice != 0)
            show();
    });
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

/// In place of the one that is shown.
void StopNotice::show() {
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(notice()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, wasPaused = m_flow.isPaused(), request = m_request] {
                watcher->deleteLater();
                const QDBusPendingReply<uint> answer = *watcher;
                if (answer.isError())
                    return base::logInfo("No notification with a Stop button: {}",
                                         answer.error().message().toStdString());
                if (request != m_request)
                    return close(answer.value()); // the recording has ended meanwhile
                m_notice = answer.value();
                if (wasPaused != m_flow.isPaused())
                    show();
            });
}

QDBusMessage StopNotice::notice() const {
    // A low urgency goes into the list without a banner, which would be in the film.
    constexpr uchar lowUrgency = 0;
    constexpr int staysUntilClosed = 0;
    const bool isPaused = m_flow.isPaused();
    auto request = callOf(QStringLiteral("Notify"));
    request << QStringLiteral("Vantro") << m_notice
            << QString::fromLatin1(capture::ownBundleIdentifier)
            << (isPaused ? tr("The recording is paused") : tr("Recording the screen")) << QString()
            << QStringList{stopAction, tr("Stop Recording"), pauseAction,
                           isPaused ? tr("Resume Recording") : tr("Pause Recording")}
            << QVariantMap{{QStringLiteral("urgency"), QVariant::fromValue(lowUrgency)},
                           {QStringLiteral("resident"), true},
                           {QStringLiteral("desktop-entry"),
                            QString::fromLatin1(capture::ownBundleIdentifier)}}
            << staysUntilClosed;
    return request;
}

void StopNotice::close(uint notice) {
    auto request = callOf(QStringLiteral("CloseNotification"));
    request << notice;
    m_bus.asyncCall(request);
}

void StopNotice::chosen(uint notice, const QString& action) {
    if (notice != m_notice || notice == 0)
        return;
    if (action == stopAction)
        m_flow.stopRecording();
    else if (action == pauseAction)
        m_flow.pauseOrResume();
}

} // namespace vantro::window
