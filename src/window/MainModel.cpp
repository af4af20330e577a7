#include "window/MainModel.h"

#include "app/flows/ExportFlow.h"
#include "app/flows/PermissionService.h"
#include "app/flows/ProjectFlow.h"
#include "app/flows/RecoveryFlow.h"
#include "ui/ActionGuard.h"
#include "ui/TimeText.h"
#include "window/picker/WindowPickerModel.h"

#include <QLocale>

namespace vantro::window {

MainModel::MainModel(app::AppState& state, app::flows::PermissionService& permission,
                     picker::WindowPickerModel& windows, app::flows::Flows flows,
                     ui::ActionGuard& guard)
    : m_state(state), m_permission(permission), m_windows(windows), m_flows(flows), m_guard(guard) {
    connectState();
    connectFlows();
}

void MainModel::connectState() {
    connect(&m_state, &app::AppState::phaseChanged, this, &MainModel::phaseChanged);
    connect(&m_state, &app::AppState::recordingPathChanged, this, &MainModel::screenChanged);
    connect(&m_state, &app::AppState::metadataChanged, this, &MainModel::screenChanged);
    connect(&m_state, &app::AppState::captureModeChanged, this, &MainModel::captureModeChanged);
    for (const auto changed :
         {&app::AppState::systemAudioEnabledChanged, &app::AppState::microphoneAudioEnabledChanged,
          &app::AppState::webcamEnabledChanged})
        connect(&m_state, changed, this, &MainModel::sourcesChanged);
    connect(&m_state, &app::AppState::errorChanged, this, &MainModel::alertChanged);
    connect(&m_permission, &app::flows::PermissionService::screenRecordingGrantedChanged, this,
            &MainModel::screenChanged);
}

void MainModel::connectFlows() {
    auto& recording = m_flows.recording;
    connect(&recording, &app::flows::RecordingFlow::windowPickerShownChanged, this, [this] {
        m_windows.setShown(m_flows.recording.isWindowPickerShown());
        Q_EMIT screenChanged();
    });
    connect(&recording, &app::flows::RecordingFlow::countdownRemainingChanged, this, [this] {
        Q_EMIT screenChanged();
        Q_EMIT countdownChanged();
    });
    for (const auto changed : {&app::flows::RecordingFlow::elapsedSecondsChanged,
                               &app::flows::RecordingFlow::stoppingChanged,
                               &app::flows::RecordingFlow::recorderStatusChanged})
        connect(&recording, changed, this, &MainModel::recordingChanged);
}

void MainModel::phaseChanged() {
    Q_EMIT screenChanged();
    if (m_state.phase() == app::AppPhase::recording())
        return;
    m_guard.setQuitAsked(false);
    // A recording that could not be finished is an error that the user must see.
    if (std::exchange(m_quitAfterStop, false) && m_state.phase() == app::AppPhase::previewing())
        Q_EMIT quitReady();
}

QString MainModel::screen() const {
    switch (ui::shownScreen(m_state, m_permission, m_flows.recording)) {
    case ui::Screen::waiting:
        return QStringLiteral("waiting");
    case ui::Screen::controls:
        return QStringLiteral("controls");
    case ui::Screen::picker:
        return QStringLiteral("picker");
    case ui::Screen::countdown:
        return QStringLiteral("countdown");
    case ui::Screen::selecting:
        return QStringLiteral("selecting");
    case ui::Screen::recording:
        return QStringLiteral("recording");
    case ui::Screen::editor:
        return QStringLiteral("editor");
    case ui::Screen::empty:
        break;
    }
    return QStringLiteral("empty");
}

int MainModel::captureMode() const {
    return static_cast<int>(m_state.captureMode());
}

void MainModel::setCaptureMode(int mode) {
    if (mode >= 0 && mode < static_cast<int>(model::allCaptureModes.size()))
        m_state.setCaptureMode(model::allCaptureModes[static_cast<std::size_t>(mode)]);
}

QString MainModel::elapsed() const {
    return ui::elapsedText(m_flows.recording.elapsedSeconds());
}

QString MainModel::recordingNote() const {
    const auto& status = m_flows.recording.recorderStatus();
    if (!status.isCapturing())
        return tr("Capture has ended. Stop to keep what was recorded.");
    if (status.framesDropped > 0)
        return tr("Frames dropped: %1").arg(status.framesDropped);
    return {};
}

QString MainModel::alertText() const {
    const auto& error = m_state.error();
    return error ? QString::fromStdString(error->description()) : QString();
}

QString MainModel::alertSuggestion() const {
    const auto& error = m_state.error();
    return error ? QString::fromStdString(std::string(error->recoverySuggestion())) : QString();
}

void MainModel::openProject() {
    m_flows.projects.openProject();
}

void MainModel::pickWindow(int row) {
    if (const auto window = m_windows.window(row))
        m_flows.recording.windowSelected(*window);
}

void MainModel::recover() {
    m_flows.recovery.recover();
}

void MainModel::dismissRecovery() {
    m_flows.recovery.dismiss();
}

void MainModel::discardRecovery() {
    m_flows.recovery.discard();
}

QString MainModel::recoverySize() const {
    return QLocale().formattedDataSize(static_cast<qint64>(m_flows.recovery.offeredBytes()));
}

bool MainModel::mayClose() {
    if (m_state.phase() != app::AppPhase::recording()) {
        m_flows.recording.areaCancelled();
        m_flows.exports.cancel();
        Q_EMIT quitReady();
        return true;
    }
    if (stopping())
        m_quitAfterStop = true;
    else
        m_guard.setQuitAsked(true);
    return false;
}

void MainModel::keepRecording() {
    m_guard.setQuitAsked(false);
}

void MainModel::stopAndQuit() {
    m_guard.setQuitAsked(false);
    m_quitAfterStop = true;
    m_flows.recording.stopRecording();
}

} // namespace vantro::window
