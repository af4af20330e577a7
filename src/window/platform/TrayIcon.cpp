#include "window/platform/TrayIcon.h"

#include "app/flows/RecordingFlow.h"
#include "ui/SymbolProvider.h"
#include "ui/TimeText.h"

#include <QMenu>
#include <QSystemTrayIcon>

namespace vantro::window {
namespace {

const QColor recordingRed(229, 72, 77);
constexpr int iconPixels = 64;

} // namespace

TrayIcon::TrayIcon(app::AppState& state, app::flows::RecordingFlow& flow)
    : m_state(state), m_flow(flow) {
    QObject::connect(&state, &app::AppState::phaseChanged, &flow, [this] { update(); });
    QObject::connect(&flow, &app::flows::RecordingFlow::elapsedSecondsChanged, &flow,
                     [this] { update(); });
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
    if (m_icon == nullptr) {
        m_menu = std::make_unique<QMenu>();
        m_menu->addAction(QObject::tr("Stop Recording"), &m_flow,
                          &app::flows::RecordingFlow::stopRecording);
        m_icon = std::make_unique<QSystemTrayIcon>(QIcon(QPixmap::fromImage(
            ui::drawSymbol(QStringLiteral("record.circle.fill"), recordingRed, iconPixels))));
        m_icon->setContextMenu(m_menu.get());
        QObject::connect(m_icon.get(), &QSystemTrayIcon::activated, &m_flow,
                         [this](QSystemTrayIcon::ActivationReason reason) {
                             if (reason == QSystemTrayIcon::Trigger)
                                 m_flow.stopRecording();
                         });
    }
    m_icon->setToolTip(
        QObject::tr("Recording %1 (click to stop)").arg(ui::elapsedText(m_flow.elapsedSeconds())));
    m_icon->show();
}

} // namespace vantro::window
