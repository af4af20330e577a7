#include "program/ProgramControl.h"

#include "app/flows/RecordingFlow.h"
#include "app/flows/TaskRunner.h"
#include "app/state/AppState.h"

namespace vantro::program {

ProgramControl::ProgramControl(app::AppState& state, app::flows::RecordingFlow& recording,
                               app::flows::TaskRunner& tasks)
    : m_state(state), m_recording(recording) {
    const auto onMain = [&tasks](std::function<void()> command) {
        return [&tasks, command = std::move(command)] { tasks.onMain(command); };
    };
    m_service =
        control::ControlService::connect({.stop = onMain([this] { m_recording.stopRecording(); }),
                                          .mark = onMain([this] { mark(); }),
                                          .toggle = onMain([this] { toggle(); })});
    if (!m_service)
        return;
    m_service->take(control::Role::program);
    QObject::connect(&state, &app::AppState::phaseChanged, &m_context, [this] {
        const bool isRecorder = m_state.phase() == app::AppPhase::recording();
        if (std::exchange(m_isRecorder, isRecorder) != isRecorder)
            isRecorder ? m_service->take(control::Role::recorder)
                       : m_service->release(control::Role::recorder);
    });
}

void ProgramControl::mark() {
    if (const auto recorder = m_state.recorder())
        recorder->mark();
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
