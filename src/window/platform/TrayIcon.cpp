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
const QColor idleGray(140, 140, 145); // to be seen on light and dark panels
constexpr int iconPixels = 64;

QIcon iconOf(const QColor& color) {
    return QPixmap::fromImage(
        ui::drawSymbol(QStringLiteral("record.circle.fill"), color, iconPixels));
}

} // namespace

TrayIcon::TrayIcon(app::AppState& state, app::flows::RecordingFlow& flow,
                   std::function<void()> showWindow)
    : m_state(state), m_flow(flow), m_showWindow(std::move(showWindow)) {
    QObject::connect(&state, &app::AppState::phaseChanged, &flow, [this] { update(); });
    QObject::connect(&flow, &app::flows::RecordingFlow::elapsedSecondsChanged, &flow,
                     [this] { update(); });
    update();
}

TrayIcon::~TrayIcon() = default;

void TrayIcon::make() {
    m_menu = std::make_unique<QMenu>();
    m_stop = m_menu->addAction(QObject::tr("Stop Recording"), &m_flow,
                               &app::flows::RecordingFlow::stopRecording);
    QObject::connect(m_menu->addAction(QObject::tr("Show Vantro")), &QAction::triggered, &m_flow,
                     m_showWindow);
    m_icon = std::make_unique<QSystemTrayIcon>(iconOf(idleGray));
    m_icon->setContextMenu(m_menu.get());
    QObject::connect(m_icon.get(), &QSystemTrayIcon::activated, &m_flow,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger)
                             m_isRed ? m_flow.stopRecording() : m_showWindow();
                     });
}

void TrayIcon::update() {
    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return;
    if (m_icon == nullptr)
        make();
    const auto phase = m_state.phase();
    const bool isRecording = phase == app::AppPhase::recording();
    if (std::exchange(m_isRed, isRecording) != isRecording)
        m_icon->setIcon(iconOf(isRecording ? recordingRed : idleGray));
    m_stop->setVisible(isRecording);
    if (isRecording)
        m_icon->setToolTip(QObject::tr("Recording %1 (click to stop)")
                               .arg(ui::elapsedText(m_flow.elapsedSeconds())));
    else if (phase.kind == app::AppPhase::Kind::exporting)
        m_icon->setToolTip(QObject::tr("Exporting: %1 %").arg(qRound(100 * phase.progress)));
    else
        m_icon->setToolTip(QStringLiteral("Vantro"));
    m_icon->show();
}

} // namespace vantro::window
