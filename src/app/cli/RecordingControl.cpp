#include "app/cli/RecordingControl.h"

namespace vantro::app::cli {

RecordingControl::RecordingControl(capture::Recorder& recorder, const std::stop_token& interrupted)
    : m_interrupt(interrupted, [ending = m_ending]() mutable { ending.request_stop(); })
    , m_service(control::ControlService::connect(
          {.stop = [ending = m_ending]() mutable { ending.request_stop(); },
           .mark = [&recorder] { recorder.mark(); },
           .toggle = {}})) {
    if (m_service)
        m_service->take(control::Role::recorder);
}

} // namespace vantro::app::cli
