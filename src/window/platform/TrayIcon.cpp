#include "window/platform/TrayIcon.h"

#include "app/flows/RecordingFlow.h"
#include "ui/SymbolProvider.h"
#include "ui/TimeText.h"

#include <QMenu>
#include <QSystemTrayIcon>
#include <utility>

namespace vantro::window {
namespace {

const QColor recordingRed(229, 72, 77);
const QColor pausedAmber(245, 158, 11);
const QColor idleGray(140, 140, 145); // to be seen on light and dark panels
constexpr int iconPixels = 64;

QIcon iconOf(const char* symbol, const QColor& ink) {
    return QPixmap::fromImage(ui::drawSymbol(QString::fromLatin1(symbol), ink, iconPixels));
}

} // namespace

TrayIcon::TrayIcon(app::AppState& state, app::flows::RecordingFlow& flow,
                   std::function<void()> showWindow)
    : m_state(state), m_flow(flow), m_showWindow(std::move(showWindow)) {
    QObject::connect(&state, &app::AppState::phaseChanged, &flow, [this] { update(); });
    for (const auto changed : {&app::flows::RecordingFlow::elapsedSecondsChanged,
                               &app::flows::RecordingFlow::pausedChanged})
        QObject::connect(&flow, changed, &flow, [this] { update(); });
    update();
}

TrayIcon::~TrayIcon() = default;

void TrayIcon::make() {
    m_menu = std::make_unique<QMenu>();
    m_stop = m_menu->addAction(QObject::tr("Stop Recording"), &m_flow,
                               &app::flows::RecordingFlow::stopRecording);
    m_pause = m_menu->addAction(QString(), &m_flow, &app::flows::RecordingFlow::pauseOrResume);
    QObject::connect(m_menu->addAction(QObject::tr("Show Vantro")), &QAction::triggered, &m_flow,
                     m_showWindow);
    m_icon = std::make_unique<QSystemTrayIcon>(iconOf("record.circle.fill", idleGray));
    m_icon->setContextMenu(m_menu.get());
    QObject::connect(m_icon.get(), &QSystemTrayIcon::activated, &m_flow,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger)
                             m_state.phase() == app::AppPhase::recording() ? m_flow.stopRecording()
                                                                           : m_showWindow();
                     });
}

void TrayIcon::update() {
    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return;
    if (m_icon == nullptr)
        make();
    const auto phase = m_state.phase();
    const bool isRecording = phase == app::AppPhase::recording();
    m_stop->setVisible(isRecording);
    m_pause->setVisible(isRecording);
    if (isRecording) {
        showRecording();
    } else {
        m_icon->setIcon(iconOf("record.circle.fill", idleGray));
        m_icon->setToolTip(phase.kind == app::AppPhase::Kind::exporting
                               ? QObject::tr("Exporting: %1 %").arg(qRound(100 * phase.progress))
                               : QStringLiteral("Vantro"));
    }
    m_icon->show();
}

void TrayIcon::showRecording() {
    const auto elapsed = ui::elapsedText(m_flow.elapsedSeconds());
    const bool isPaused = m_flow.isPaused();
    m_icon->setIcon(isPaused ? iconOf("pause.fill", pausedAmber)
                             : iconOf("record.circle.fill", recordingRed));
    m_icon->setToolTip(isPaused ? QObject::tr("Paused at %1 (click to stop)").arg(elapsed)
                                : QObject::tr("Recording %1 (click to stop)").arg(elapsed));
    m_pause->setText(isPaused ? QObject::tr("Resume Recording") : QObject::tr("Pause Recording"));
}

} // namespace vantro::window
