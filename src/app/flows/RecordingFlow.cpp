#include "app/flows/RecordingFlow.h"

#include "app/files/FinishRecording.h"
#include "app/files/ProjectPackage.h"
#include "app/files/RecordingFolder.h"
#include "app/flows/ErrorText.h"

#include <algorithm>

namespace vantro::app::flows {
namespace {

using namespace std::chrono_literals;

bool intersect(const model::Rect& a, const model::Rect& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height &&
           b.y < a.y + a.height;
}

} // namespace

RecordingFlow::RecordingFlow(AppState& state, RecordingServices services)
    : m_state(state), m_services(services) {}

RecordingFlow::~RecordingFlow() = default;

void RecordingFlow::beginCapture() {
    const bool busy = m_windowPickerShown || m_countdownRemaining > 0;
    if (m_state.phase() != AppPhase::idle() || busy)
        return;
    switch (m_state.captureMode()) {
    case model::CaptureMode::screen:
        return captureScreen();
    case model::CaptureMode::window:
        return setWindowPickerShown(true);
    case model::CaptureMode::area:
        return captureArea();
    }
}

void RecordingFlow::captureScreen() {
    if (const auto displays = m_services.platform.displays(); !displays.empty()) {
        const auto& main = displays.front();
        m_state.setSelectedRect({0, 0, main.frame.width, main.frame.height});
        m_state.setSelectedDisplayID(main.displayID);
    }
    targetChosen();
}

void RecordingFlow::windowSelected(const capture::ShareableWindow& window) {
    if (!m_windowPickerShown)
        return;
    setWindowPickerShown(false);
    m_state.setSelectedWindow(window);
    m_state.setSelectedRect(window.frame);
    if (const auto displays = m_services.platform.displays(); !displays.empty()) {
        const auto under = std::ranges::find_if(displays, [&window](const auto& display) {
            return intersect(display.frame, window.frame);
        });
        m_state.setSelectedDisplayID(
            (under != displays.end() ? *under : displays.front()).displayID);
    }
    targetChosen();
}

void RecordingFlow::windowPickerCancelled() {
    setWindowPickerShown(false);
}

void RecordingFlow::captureArea() {
    m_state.setPhase(AppPhase::selecting());
    m_services.tasks.onMain([this] {
        if (m_state.phase() != AppPhase::selecting())
            return;
        // An answer leads to the overlay's end, which must not come while it is answering.
        auto& tasks = m_services.tasks;
        auto overlay = m_services.overlays.show(
            {.onSelection =
                 [this, &tasks](auto displayID, auto rect) {
                     tasks.onMain([this, displayID, rect] { areaSelected(displayID, rect); });
                 },
             .onCancel = [this, &tasks] { tasks.onMain([this] { areaCancelled(); }); }});
        if (overlay == nullptr)
            return areaCancelled();
        m_state.setOverlayWindow(std::move(overlay));
    });
}

void RecordingFlow::areaSelected(std::uint32_t displayID, model::Rect rect) {
    if (m_state.phase() != AppPhase::selecting())
        return;
    m_state.setOverlayWindow({});
    m_state.setSelectedRect(rect);
    m_state.setSelectedDisplayID(displayID);
    targetChosen();
}

void RecordingFlow::areaCancelled() {
    if (m_state.phase() != AppPhase::selecting())
        return;
    m_state.setOverlayWindow({});
    m_state.setPhase(AppPhase::idle());
}

void RecordingFlow::targetChosen() {
    if (m_countdown <= 0)
        return startRecording();
    setCountdownRemaining(m_countdown);
    m_countdownTimer = m_services.timers.repeat(1s, [this] { tickCountdown(); });
}

void RecordingFlow::tickCountdown() {
    setCountdownRemaining(m_countdownRemaining - 1);
    if (m_countdownRemaining > 0)
        return;
    // The timer is running this very function: it goes once that has returned.
    m_services.tasks.onMain([finished = std::shared_ptr(std::move(m_countdownTimer))] {});
    startRecording();
}

void RecordingFlow::cancelCountdown() {
    if (m_countdownRemaining == 0)
        return;
    m_countdownTimer.reset();
    setCountdownRemaining(0);
    m_state.setPhase(AppPhase::idle());
}

void RecordingFlow::startRecording() {
    m_state.setPhase(AppPhase::recording());
    m_state.setRecordingName(files::defaultRecordingName());
    setElapsedSeconds(0);
    setRecorderStatus({});
    m_outputURL = files::makeRecordingDirectory() / files::package::recordingFile;
    auto recorder = m_services.platform.makeRecorder(
        {.outputURL = m_outputURL,
         .captureRect = m_state.selectedRect(),
         .displayID = m_state.selectedDisplayID(),
         .captureMode = m_state.captureMode(),
         .selectedWindow = m_state.selectedWindow(),
         .systemAudioEnabled = m_state.systemAudioEnabled(),
         .microphoneAudioEnabled = m_state.microphoneAudioEnabled(),
         .webcamEnabled = m_state.webcamEnabled()});
    m_state.setRecorder(recorder);
    m_secondTimer = m_services.timers.repeat(1s, [this] { tickSecond(); });
    m_services.tasks.run([this, recorder, outputURL = m_outputURL,
                          request = ++m_request]() -> TaskRunner::Continuation {
        try {
            recorder->start();
            return [this, outputURL] { Q_EMIT begun(QString::fromStdString(outputURL.string())); };
        } catch (const std::exception& failure) {
            auto text = failureText(failure, model::VantroError::Kind::captureStartFailed);
            return [this, request, text] { startFailed(request, text); };
        }
    });
}

void RecordingFlow::tickSecond() {
    setElapsedSeconds(m_elapsedSeconds + 1);
    setRecorderStatus(m_state.recorder()->status());
}

void RecordingFlow::startFailed(int request, const std::string& message) {
    if (request != m_request)
        return;
    ++m_request; // a stop asked for meanwhile has nothing left to stop
    m_secondTimer.reset();
    setStopping(false);
    m_state.setError(message, model::VantroError::Kind::captureStartFailed);
    m_state.setPhase(AppPhase::idle());
}

void RecordingFlow::stopRecording() {
    if (m_state.phase() != AppPhase::recording() || m_stopping)
        return;
    setStopping(true);
    m_secondTimer.reset();
    m_services.tasks.run([this, recorder = m_state.recorder(), outputURL = m_outputURL,
                          request = m_request]() -> TaskRunner::Continuation {
        try {
            return
                [this, request, recording = files::finishRecording(outputURL, recorder->stop())] {
                    recordingFinished(request, recording);
                };
        } catch (const std::exception& failure) {
            auto text = failureText(failure, model::VantroError::Kind::assetWriterFailed);
            return [this, request, text] { stopFailed(request, text); };
        }
    });
}

void RecordingFlow::stopFailed(int request, const std::string& message) {
    if (request != m_request)
        return;
    setStopping(false);
    m_state.setError(message, model::VantroError::Kind::assetWriterFailed);
    m_state.setPhase(AppPhase::idle());
    Q_EMIT leftBehind(QString::fromStdString(m_outputURL.string()));
}

void RecordingFlow::recordingFinished(int request, const model::Recording& recording) {
    if (request != m_request)
        return;
    setStopping(false);
    m_state.show({.name = m_state.recordingName(),
                  .recording = recording,
                  .edit = model::freshEdit(recording.metadata(), m_state.document().edit())});
}

void RecordingFlow::setElapsedSeconds(double seconds) {
    if (m_elapsedSeconds == seconds)
        return;
    m_elapsedSeconds = seconds;
    Q_EMIT elapsedSecondsChanged();
}

void RecordingFlow::setWindowPickerShown(bool shown) {
    if (m_windowPickerShown == shown)
        return;
    m_windowPickerShown = shown;
    Q_EMIT windowPickerShownChanged();
}

void RecordingFlow::setStopping(bool stopping) {
    if (m_stopping == stopping)
        return;
    m_stopping = stopping;
    Q_EMIT stoppingChanged();
}

void RecordingFlow::setRecorderStatus(const RecorderStatus& status) {
    if (m_recorderStatus == status)
        return;
    m_recorderStatus = status;
    Q_EMIT recorderStatusChanged();
}

void RecordingFlow::setCountdownRemaining(int seconds) {
    if (m_countdownRemaining == seconds)
        return;
    m_countdownRemaining = seconds;
    Q_EMIT countdownRemainingChanged();
}

} // namespace vantro::app::flows
