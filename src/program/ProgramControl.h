#pragma once

#include "control/ControlService.h"

#include <QObject>
#include <memory>

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::app::flows {
class RecordingFlow;
class TaskRunner;
} // namespace vantro::app::flows

namespace vantro::program {

/// Lets other programs of the session start and stop recordings of the window and mark zooms in
/// them. Main thread.
class ProgramControl {
  public:
    /// All outlive this, and no event is handled between its end and that of `tasks`.
    ProgramControl(app::AppState& state, app::flows::RecordingFlow& recording,
                   app::flows::TaskRunner& tasks);

    /// Ends the recording under way or being prepared, else starts one.
    void toggle();
    /// Nothing unless something is being recorded.
    void mark();

  private:
    app::AppState& m_state;
    app::flows::RecordingFlow& m_recording;
    QObject m_context; // signals are followed for as long as it lives
    std::unique_ptr<control::ControlService> m_service;
    bool m_isRecorder = false;
};

} // namespace vantro::program
