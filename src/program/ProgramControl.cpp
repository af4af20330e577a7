#include "program/ProgramControl.h"

#include "app/flows/ProjectFlow.h"
#include "app/flows/RecordingFlow.h"
#include "app/flows/TaskRunner.h"
#include "app/state/AppState.h"
#include "base/Log.h"

#include <QUrl>
#include <QWindow>
#include <stdexcept>

namespace vantro::program {

ProgramControl::ProgramControl(app::AppState& state, app::flows::Flows flows,
                               app::flows::TaskRunner& tasks)
    : m_state(state), m_flows(flows) {
    const auto onMain = [&tasks](std::function<void()> command) {
        return [&tasks, command = std::move(command)] { tasks.onMain(command); };
    };
    m_service = control::ControlService::connect(
        {.stop = onMain([this] { m_flows.recording.stopRecording(); }),
         .mark =
             [this, marking = onMain([this] { mark(); })] {
                 if (m_isPaused)
                     throw std::runtime_error("the recording is paused");
                 marking();
             },
         .pause = onMain([this] { m_flows.recording.pauseOrResume(); }),
         .toggle = onMain([this] { toggle(); }),
         .show =
             [this, &tasks](const auto& addresses, const auto& token) {
                 tasks.onMain([this, addresses, token] { show(addresses, token); });
             },
         .act = [this,
                 &tasks](const auto& action) { tasks.onMain([this, action] { act(action); }); }});
    QObject::connect(&flows.recording, &app::flows::RecordingFlow::pausedChanged, &m_context,
                     [this] { m_isPaused = m_flows.recording.isPaused(); });
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
    const auto recorder = m_state.recorder();
    if (recorder && !recorder->mark())
        base::logInfo("No zoom is marked, as nothing is recorded now");
}

void ProgramControl::act(capture::GlobalAction action) {
    switch (action) {
    case capture::GlobalAction::toggle:
        return toggle();
    case capture::GlobalAction::pause:
        return m_flows.recording.pauseOrResume();
    case capture::GlobalAction::mark:
        return mark();
    }
}

void ProgramControl::toggle() {
    if (m_state.phase() == app::AppPhase::recording())
        m_flows.recording.stopRecording();
    else if (m_flows.recording.preparation().isUnderWay())
        m_flows.recording.preparation().cancel();
    else
        m_flows.recording.preparation().begin();
}

void ProgramControl::show(const std::vector<std::string>& addresses, const std::string& token) {
    // While it records the window stays away, and nothing is opened.
    if (m_state.phase() == app::AppPhase::recording() || m_flows.recording.areWindowsHidden())
        return;
    if (auto* window = qobject_cast<QWindow*>(m_state.mainWindow())) {
        if (!token.empty())
            qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(token));
        window->show();
        window->raise();
        window->requestActivate();
    }
    if (addresses.empty())
        return;
    const QUrl address(QString::fromStdString(addresses.front())); // there is one editor
    if (address.isLocalFile())
        m_flows.projects.open(address.toLocalFile().toStdString());
}

void ProgramControl::act(const std::string& action) {
    using model::CaptureMode;
    if (action == "stop-recording")
        return m_flows.recording.stopRecording();
    for (const auto& [name, mode] : {std::pair{"record-screen", CaptureMode::screen},
                                     std::pair{"record-window", CaptureMode::window},
                                     std::pair{"record-area", CaptureMode::area}})
        if (action == name) {
            show({}, {});
            m_state.setCaptureMode(mode);
            m_flows.recording.preparation().begin();
        }
}

} // namespace vantro::program
