#pragma once

#include "capture/Recorder.h"
#include "control/ControlService.h"

#include <functional>
#include <memory>
#include <stop_token>

namespace vantro::app::cli {

/// Lets other programs of the session end and pause a recording and mark zooms in it, for as long
/// as this lives: until the project is saved. `recorder` outlives it.
class RecordingControl {
  public:
    RecordingControl(capture::Recorder& recorder, const std::stop_token& interrupted);

    /// Requested by those programs and by `interrupted`.
    std::stop_token ending() const { return m_ending.get_token(); }

  private:
    std::stop_source m_ending;
    const std::stop_callback<std::function<void()>> m_interrupt;
    const std::unique_ptr<control::ControlService> m_service;
};

} // namespace vantro::app::cli
