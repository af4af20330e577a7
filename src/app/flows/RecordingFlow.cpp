#include "app/flows/RecordingFlow.h"

#include "app/files/FinishRecording.h"
#include "app/files/ProjectPackage.h"
#include "app/files/RecordingFolder.h"
#include "app/flows/ErrorText.h"
#include "base/Fatal.h"
#include "capture/RecordingTarget.h"

#include <algorithm>
#include <utility>

namespace vantro::app::flows {
namespace {

using namespace std::chrono_literals;

} // namespace

RecordingFlow::RecordingFlow(AppState& state, RecordingServices services)
    : m_state(state), m_services(services) {
    connect(&m_state, &AppState::phaseChanged, this, [this] {
        if (m_state.phase() == AppPhase::previewing())
            cancelPreparation();
    });
}

/// Whoever waits for the user's choice must not be waited for.
RecordingFlow::~RecordingFlow() {
    m_choice.request_stop();
}

bool RecordingFlow::mayFollow(Preparation before, Preparation after) {
    switch (after) {
        using enum Preparation;
    case none:
        return true;
    case pickingWindow:
    case selectingArea:
        return before == none;
    case choosing:
        return before != choosing && before != countingDown;
    case countingDown:
        return before == choosing;
    }
    return false;
}

void RecordingFlow::setPreparation(Preparation preparation) {
    const auto before = std::exchange(m_preparation, preparation);
    base::require(mayFollow(before, preparation),
                  "the preparations of a recording are out of order");
    using enum Preparation;
    if ((before == pickingWindow) != (preparation == pickingWindow))
        Q_EMIT windowPickerShownChanged();
    const bool isAsking = preparation == choosing && isDesktopToAsk();
    if (std::exchange(m_isDesktopAsking, isAsking) != isAsking)
        Q_EMIT desktopAskingChanged();
}

void RecordingFlow::beginCapture() {
    if (m_state.phase() != AppPhase::idle() || m_preparation != Preparation::none)
        return;
    m_choosesAnew = false;
    switch (m_state.captureMode()) {
    case model::CaptureMode::screen:
        return captureScreen();
    case model::CaptureMode::window:
        return isDesktopToAsk() ? choose() : setPreparation(Preparation::pickingWindow);
    case model::CaptureMode::area:
        return captureArea();
    }
}

void RecordingFlow::chooseAnew() {
    if (m_state.phase() != AppPhase::idle() || m_preparation != Preparation::none)
        return;
    m_choosesAnew = true;
    choose();
}

bool RecordingFlow::isDesktopToAsk() const {
    return !m_services.platform.abilities().listsContent.isAvailable();
}

/// The display that was chosen, while it is attached, else the main one.
void RecordingFlow::captureScreen() {
    if (const auto displays = m_services.platform.displays(); !displays.empty()) {
        const auto selected = std::ranges::find(displays, m_state.selectedDisplayID(),
                                                &capture::ShareableDisplay::displayID);
        const auto& display = selected != displays.end() ? *selected : displays.front();
        m_state.setSelectedRect(display.frame);
        m_state.setSelectedDisplayID(display.displayID);
    }
    choose();
}

void RecordingFlow::windowSelected(const capture::ShareableWindow& window) {
    if (m_preparation != Preparation::pickingWindow)
        return;
    m_state.setSelectedWindow(window);
    m_state.setSelectedRect(window.frame);
    const auto displays = m_services.platform.displays();
    if (const auto* display = capture::displayUnder(window.frame, displays))
        m_state.setSelectedDisplayID(display->displayID);
    choose();
}

void RecordingFlow::windowPickerCancelled() {
    if (m_preparation == Preparation::pickingWindow)
        cancelPreparation();
}

void RecordingFlow::captureArea() {
    setPreparation(Preparation::selectingArea);
    m_state.setPhase(AppPhase::selecting());
    m_services.tasks.onMain([this] {
        if (m_preparation != Preparation::selectingArea)
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
    if (m_preparation != Preparation::selectingArea)
        return;
    m_state.setOverlayWindow({});
    m_state.setSelectedRect(rect);
    m_state.setSelectedDisplayID(displayID);
    choose();
}

void RecordingFlow::areaCancelled() {
    if (m_preparation == Preparation::selectingArea)
        cancelPreparation();
}

void RecordingFlow::cancelPreparation() {
    if (m_preparation == Preparation::none)
        return;
    ++m_request;
    m_choice.request_stop();
    m_chosen.reset();
    m_countdownTimer.reset();
    setCountdownRemaining(0);
    setPreparation(Preparation::none);
    m_state.setOverlayWindow({});
    if (m_state.phase() == AppPhase::selecting())
        m_state.setPhase(AppPhase::idle());
}

capture::RecordingRequest RecordingFlow::makeRequest() const {
    // A switch stands for off where the desktop has nothing to switch on.
    const auto able = m_services.platform.abilities();
    capture::RecordingRequest request{
        .mode = m_state.captureMode(),
        .displayID = m_state.selectedDisplayID(),
        .area = m_state.selectedRect(),
        .windowID = {},
        .windowTitle = {},
        .chooseAgain = m_choosesAnew,
        .sources = {.systemSound = m_state.systemAudioEnabled() && able.systemSound.isAvailable(),
                    .microphone = m_state.microphoneAudioEnabled() && able.microphone.isAvailable(),
                    .camera = m_state.webcamEnabled() && able.camera.isAvailable(),
                    .microphoneDevice = m_state.microphoneDevice(),
                    .cameraDevice = m_state.webcamDevice()}};
    if (const auto& window = m_state.selectedWindow())
        request.windowID = window->windowID;
    return request;
}

void RecordingFlow::choose() {
    setPreparation(Preparation::choosing);
    m_choice = std::stop_source();
    m_services.tasks.run([this, recorder = m_services.platform.makeRecorder(makeRequest()),
                          cancelled = m_choice.get_token(),
                          request = ++m_request]() -> TaskRunner::Continuation {
        try {
            const bool isChosen = recorder->choose(cancelled);
            return [this, request, recorder, isChosen] { chosen(request, recorder, isChosen); };
        } catch (const std::exception& failure) {
            auto text = failureText(failure, model::VantroError::Kind::captureStartFailed);
            return [this, request, text] { chooseFailed(request, text); };
        }
    });
}

void RecordingFlow::chooseFailed(int request, const std::string& message) {
    if (request != m_request)
        return;
    cancelPreparation();
    m_state.setError(message, model::VantroError::Kind::captureStartFailed);
}

void RecordingFlow::chosen(int request, const std::shared_ptr<capture::Recorder>& recorder,
                           bool isChosen) {
    if (request != m_request)
        return;
    if (!isChosen)
        return cancelPreparation();
    m_chosen = recorder;
    if (m_countdown <= 0)
        return startRecording();
    setPreparation(Preparation::countingDown);
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

void RecordingFlow::startRecording() {
    setPreparation(Preparation::none);
    m_state.setPhase(AppPhase::recording());
    m_state.setRecordingName(files::defaultRecordingName());
    setElapsedSeconds(0);
    setRecorderStatus({});
    m_outputURL = files::makeRecordingDirectory() / files::package::recordingFile;
    const auto recorder = std::exchange(m_chosen, nullptr);
    m_state.setRecorder(recorder);
    m_secondTimer = m_services.timers.repeat(1s, [this] { tickSecond(); });
    m_services.tasks.run([this, recorder, outputURL = m_outputURL,
                          request = ++m_request]() -> TaskRunner::Continuation {
        try {
            recorder->start(outputURL);
            return {};
        } catch (const std::exception& failure) {
            auto text = failureText(failure, model::VantroError::Kind::captureStartFailed);
            return [this, request, text] { startFailed(request, text); };
        }
    });
}

void RecordingFlow::tickSecond() {
    setElapsedSeconds(m_elapsedSeconds + 1);
    setRecorderStatus(m_state.recorder()->statistics());
    if (m_recorderStatus.condition == capture::RecordingCondition::userStopped)
        stopRecording();
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

void RecordingFlow::setStopping(bool stopping) {
    if (m_stopping == stopping)
        return;
    m_stopping = stopping;
    Q_EMIT stoppingChanged();
}

void RecordingFlow::setRecorderStatus(const capture::RecordingStatistics& statistics) {
    if (m_recorderStatus == statistics)
        return;
    m_recorderStatus = statistics;
    Q_EMIT recorderStatusChanged();
}

void RecordingFlow::setCountdownRemaining(int seconds) {
    if (m_countdownRemaining == seconds)
        return;
    m_countdownRemaining = seconds;
    Q_EMIT countdownRemainingChanged();
}

} // namespace vantro::app::flows
