#pragma once

#include "control/ControlService.h"

#include <QObject>
#include <memory>

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::app::flows {
class RecordingFlow;
} // namespace vantro::app::flows

namespace vantro::program {

/// Lets other programs of the session start and stop recordings of the window and mark zooms in
/// them. Main thread.
class ProgramControl {
  public:
    /// Both outlive this.
    ProgramControl(app::AppState& state, app::flows::RecordingFlow& recording);

  private:
    void toggle();

    app::AppState& m_state;
    app::flows::RecordingFlow& m_recording;
    QObject m_mainThread; // commands wait for it, and go with it
    std::unique_ptr<control::ControlService> m_service;
    bool m_isRecorder = false;
};

} // namespace vantro::program
