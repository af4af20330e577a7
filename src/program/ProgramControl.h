#pragma once

#include "app/flows/Flows.h"
#include "control/ControlService.h"

#include <QObject>
#include <memory>

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::app::flows {
class TaskRunner;
} // namespace vantro::app::flows

namespace vantro::program {

/// Lets other programs of the session start and stop recordings of the window and mark zooms in
/// them, and the desktop show the window and open files in it. Main thread.
class ProgramControl {
  public:
    /// All outlive this, and no event is handled between its end and that of `tasks`.
    ProgramControl(app::AppState& state, app::flows::Flows flows, app::flows::TaskRunner& tasks);

    /// Ends the recording under way or being prepared, else starts one.
    void toggle();
    /// Nothing unless something is being recorded.
    void mark();
    /// One of the desktop entry's: "record-screen", "record-window", "record-area",
    /// "stop-recording". Others do nothing.
    void act(const std::string& action);

    /// Shows the window and opens the first of the files; nothing while something is recorded.
    /// `token` is the desktop's leave to come to the front; empty without one.
    void show(const std::vector<std::string>& addresses, const std::string& token);

  private:
    app::AppState& m_state;
    const app::flows::Flows m_flows;
    QObject m_context; // signals are followed for as long as it lives
    std::unique_ptr<control::ControlService> m_service;
    bool m_isRecorder = false;
};

} // namespace vantro::program
