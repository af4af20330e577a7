#include "app/cli/RecordingControl.h"

#include <stdexcept>

namespace vantro::app::cli {
namespace {

void mark(capture::Recorder& recorder) {
    if (!recorder.mark())
        throw std::runtime_error(recorder.statistics().isPaused ? "the recording is paused"
                                                                : "the recording has not begun");
}

void pauseOrResume(capture::Recorder& recorder) {
    recorder.statistics().isPaused ? recorder.resume() : recorder.pause();
}

} // namespace

RecordingControl::RecordingControl(capture::Recorder& recorder, const std::stop_token& interrupted)
    : m_interrupt(interrupted, [ending = m_ending]() mutable { ending.request_stop(); })
    , m_service(control::ControlService::connect(
          {.stop = [ending = m_ending]() mutable { ending.request_stop(); },
           .mark = [&recorder] { mark(recorder); },
           .pause = [&recorder] { pauseOrResume(recorder); },
           .toggle = {}})) {
    if (m_service)
        m_service->take(control::Role::recorder);
}

} // namespace vantro::app::cli
