#include "window/platform/TrayIcon.h"

#include "app/flows/RecordingFlow.h"
#include "ui/SymbolProvider.h"
#include "ui/TimeText.h"

#include <QMenu>
#include <QSystemTrayIcon>

namespace vantro::window {
namespace {

const QColor recordingRed(229, 72, 77);
const QColor pausedAmber(245, 158, 11);
constexpr int iconPixels = 64;

QIcon iconOf(const char* symbol, const QColor& ink) {
    return QPixmap::fromImage(ui::drawSymbol(QString::fromLatin1(symbol), ink, iconPixels));
}

} // namespace

TrayIcon::TrayIcon(app::AppState& state, app::flows::RecordingFlow& flow)
    : m_state(state), m_flow(flow) {
    QObject::connect(&state, &app::AppState::phaseChanged, &flow, [this] { update(); });
    for (const auto changed : {&app::flows::RecordingFlow::elapsedSecondsChanged,
                               &app::flows::RecordingFlow::pausedChanged})
        QObject::connect(&flow, changed, &flow, [this] { update(); });
}

TrayIcon::~TrayIcon() = default;

void TrayIcon::update() {
    if (m_state.phase() != app::AppPhase::recording()) {
        if (m_icon != nullptr)
            m_icon->hide();
        return;
    }
    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return;
    if (m_icon == nullptr)
        make();
    const auto elapsed = ui::elapsedText(m_flow.elapsedSeconds());
    const bool isPaused = m_flow.isPaused();
    m_icon->setIcon(isPaused ? iconOf("pause.fill", pausedAmber)
                             : iconOf("record.circle.fill", recordingRed));
    m_icon->setToolTip(isPaused ? QObject::tr("Paused at %1 (click to stop)").arg(elapsed)
                                : QObject::tr("Recording %1 (click to stop)").arg(elapsed));
    m_pause->setText(isPaused ? QObject::tr("Resume Recording") : QObject::tr("Pause Recording"));
    m_icon->show();
}

void TrayIcon::make() {
    m_menu = std::make_unique<QMenu>();
    m_menu->addAction(QObject::tr("Stop Recording"), &m_flow,
                      &app::flows::RecordingFlow::stopRecording);
    m_pause = m_menu->addAction(QString(), &m_flow, &app::flows::RecordingFlow::pauseOrResume);
    m_icon = std::make_unique<QSystemTrayIcon>();
    m_icon->setContextMenu(m_menu.get());
    QObject::connect(m_icon.get(), &QSystemTrayIcon::activated, &m_flow,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger)
                             m_flow.stopRecording();
                     });
}

} // namespace vantro::window
