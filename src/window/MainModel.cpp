#include "window/MainModel.h"

#include "app/flows/ExportFlow.h"
#include "app/flows/PermissionService.h"
#include "app/flows/ProjectFlow.h"
#include "app/flows/RecoveryFlow.h"
#include "ui/TimeText.h"
#include "window/picker/WindowPickerModel.h"

namespace vantro::window {

MainModel::MainModel(app::AppState& state, app::flows::PermissionService& permission,
                     picker::WindowPickerModel& windows, Flows flows)
    : m_state(state), m_permission(permission), m_windows(windows), m_flows(flows) {
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
    connect(&m_state, &app::AppState::showErrorChanged, this, &MainModel::alertChanged);
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
    connect(&m_flows.projects, &app::flows::ProjectFlow::activityChanged, this,
            &MainModel::busyChanged);
    connect(&m_flows.recovery, &app::flows::RecoveryFlow::offeredChanged, this,
            &MainModel::recoveryOfferedChanged);
}

void MainModel::phaseChanged() {
    Q_EMIT screenChanged();
    if (m_state.phase() == app::AppPhase::recording())
        return;
    setQuitAsked(false);
    // A recording that could not be finished is an error that the user must see.
    if (std::exchange(m_quitAfterStop, false) && m_state.phase() == app::AppPhase::previewing())
        Q_EMIT quitReady();
}

QString MainModel::screen() const {
    switch (m_state.phase().kind) {
    case app::AppPhase::Kind::selecting:
        return countdown() > 0 ? QStringLiteral("countdown") : QStringLiteral("selecting");
    case app::AppPhase::Kind::recording:
        return QStringLiteral("recording");
    case app::AppPhase::Kind::previewing:
    case app::AppPhase::Kind::exporting:
        return m_state.document().recording() ? QStringLiteral("editor") : QStringLiteral("empty");
    case app::AppPhase::Kind::idle:
        break;
    }
    if (!m_permission.screenRecordingGranted())
        return QStringLiteral("waiting");
    if (m_flows.recording.isWindowPickerShown())
        return QStringLiteral("picker");
    return countdown() > 0 ? QStringLiteral("countdown") : QStringLiteral("controls");
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
        return QStringLiteral("Capture has ended. Stop to keep what was recorded.");
    if (status.framesDropped > 0)
        return QStringLiteral("%1 frames dropped").arg(status.framesDropped);
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

bool MainModel::busy() const {
    return m_flows.projects.isBusy();
}

void MainModel::openProject() {
    m_flows.projects.openProject();
}

void MainModel::pickWindow(int row) {
    if (const auto window = m_windows.window(row))
        m_flows.recording.windowSelected(*window);
}

bool MainModel::recoveryOffered() const {
    return m_flows.recovery.isOffered();
}

void MainModel::recover() {
    m_flows.recovery.recover();
}

void MainModel::dismissRecovery() {
    m_flows.recovery.dismiss();
}

bool MainModel::mayClose() {
    if (m_state.phase() != app::AppPhase::recording()) {
        m_flows.recording.areaCancelled();
        m_flows.exports.cancel();
        return true;
    }
    if (stopping())
        m_quitAfterStop = true;
    else
        setQuitAsked(true);
    return false;
}

void MainModel::keepRecording() {
    setQuitAsked(false);
}

void MainModel::stopAndQuit() {
    setQuitAsked(false);
    m_quitAfterStop = true;
    m_flows.recording.stopRecording();
}

void MainModel::setQuitAsked(bool asked) {
    if (m_quitAsked == asked)
        return;
    m_quitAsked = asked;
    Q_EMIT quitAskedChanged();
}

} // namespace vantro::window
