#include "program/ProgramControl.h"

#include "app/flows/RecordingFlow.h"
#include "app/state/AppState.h"

#include <QMetaObject>

namespace vantro::program {

ProgramControl::ProgramControl(app::AppState& state, app::flows::RecordingFlow& recording)
    : m_state(state), m_recording(recording) {
    const auto onMain = [this](std::function<void()> command) {
        return [this, command = std::move(command)] {
            QMetaObject::invokeMethod(
                &m_mainThread, [command] { command(); }, Qt::QueuedConnection);
        };
    };
    m_service =
        control::ControlService::connect({.stop = onMain([this] { m_recording.stopRecording(); }),
                                          .mark = onMain([this] {
                                              if (const auto recorder = m_state.recorder())
                                                  recorder->mark();
                                          }),
                                          .toggle = onMain([this] { toggle(); })});
    if (!m_service)
        return;
    m_service->take(control::Role::program);
    QObject::connect(&state, &app::AppState::phaseChanged, &m_mainThread, [this] {
        const bool isRecorder = m_state.phase() == app::AppPhase::recording();
        if (std::exchange(m_isRecorder, isRecorder) != isRecorder)
            isRecorder ? m_service->take(control::Role::recorder)
                       : m_service->release(control::Role::recorder);
    });
}

void ProgramControl::toggle() {
    if (m_state.phase() == app::AppPhase::recording())
        m_recording.stopRecording();
    else if (m_recording.isPreparing())
        m_recording.cancelPreparation();
    else
        m_recording.beginCapture();
}

} // namespace vantro::program
