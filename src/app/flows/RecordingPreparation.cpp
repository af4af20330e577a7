// What precedes a recording: the choice of what to record, up to its start.
#include "app/files/RecordingFolder.h"
#include "app/flows/ErrorText.h"
#include "app/flows/RecordingFlow.h"
#include "base/Fatal.h"
#include "capture/RecordingTarget.h"

#include <algorithm>
#include <utility>

namespace vantro::app::flows {

using namespace std::chrono_literals;

bool RecordingFlow::mayFollow(Preparation before, Preparation after) {
    switch (after) {
        using enum Preparation;
    case none:
        return true;
    case pickingWindow:
        return before == none;
    case selectingArea:
        return before == none || before == choosing;
    case choosing:
        return before == none || before == pickingWindow || before == selectingArea;
    case confirming:
        return before == choosing;
    case countingDown:
        return before == choosing || before == selectingArea;
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
    const bool isShown = (before == confirming) != (preparation == confirming);
    if (std::exchange(m_isDesktopAsking, isAsking) != isAsking || isShown)
        Q_EMIT desktopAskingChanged();
}

void RecordingFlow::beginCapture() {
    if (isConfirming())
        return confirmChosen(); // as a key for it is pressed again
    if (m_state.phase() != AppPhase::idle() || m_preparation != Preparation::none ||
        !isFolderUsable())
        return;
    m_choosesAnew = false;
    switch (m_state.captureMode()) {
    case model::CaptureMode::screen:
        return captureScreen();
    case model::CaptureMode::window:
        return isDesktopToAsk() ? choose() : setPreparation(Preparation::pickingWindow);
    case model::CaptureMode::area:
        return isDesktopToAsk() ? choose() : captureArea();
    }
}

void RecordingFlow::chooseAnew() {
    if (isConfirming() || m_preparation == Preparation::countingDown)
        cancelPreparation();
    if (m_state.phase() != AppPhase::idle() || m_preparation != Preparation::none ||
        !isFolderUsable())
        return;
    m_choosesAnew = true;
    choose();
}

/// Whoever has chosen a folder is told that it is gone before they choose what to record.
bool RecordingFlow::isFolderUsable() {
    const auto problem = m_folder ? files::recordingsFolderProblem(*m_folder) : std::string();
    if (!problem.empty())
        m_state.setError(tr("recordings cannot go to %1. The settings take another folder.")
                             .arg(QString::fromStdString(problem))
                             .toStdString(),
                         model::VantroError::Kind::captureStartFailed);
    return problem.empty();
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
        auto overlay = m_services.overlays.show(overlayCallbacks());
        if (overlay == nullptr)
            return areaCancelled();
        m_state.setOverlayWindow(std::move(overlay));
    });
}

/// An answer leads to the overlay's end, which must not come while it is answering.
AreaOverlayCallbacks RecordingFlow::overlayCallbacks() {
    auto& tasks = m_services.tasks;
    return {.onSelection =
                [this, &tasks](auto displayID, auto rect) {
                    tasks.onMain([this, displayID, rect] { areaSelected(displayID, rect); });
                },
            .onCancel = [this, &tasks] { tasks.onMain([this] { areaCancelled(); }); }};
}

/// The picture on which an area is selected stays still, and our own windows are not in it.
void RecordingFlow::freezeScreen() {
    setPreparation(Preparation::selectingArea);
    m_state.setPhase(AppPhase::selecting());
    setWindowsHidden(true);
    m_services.tasks.run(
        [this, recorder = m_chosen, request = m_request]() -> TaskRunner::Continuation {
            recorder->awaitHiddenWindows();
            return [this, request, content = recorder->chosen()] {
                if (request == m_request)
                    selectOn(content);
            };
        });
}

void RecordingFlow::selectOn(const std::optional<capture::ChosenContent>& content) {
    auto overlay = content && content->picture != nullptr
                       ? m_services.overlays.showOn(*content, overlayCallbacks())
                       : nullptr;
    if (overlay == nullptr)
        return areaCancelled();
    m_state.setOverlayWindow(std::move(overlay));
}

void RecordingFlow::cropTo(const model::Rect& area) {
    m_services.tasks.run(
        [this, recorder = m_chosen, area, request = m_request]() -> TaskRunner::Continuation {
            try {
                recorder->crop(area);
                return [this, request] {
                    if (request == m_request)
                        m_countdown > 0 ? beginCountdown() : startRecording();
                };
            } catch (const std::exception& failure) {
                auto text = failureText(failure, model::VantroError::Kind::captureStartFailed);
                return [this, request, text] { chooseFailed(request, text); };
            }
        });
}

void RecordingFlow::areaSelected(std::uint32_t displayID, model::Rect rect) {
    if (m_preparation != Preparation::selectingArea)
        return;
    m_state.setOverlayWindow({});
    if (m_chosen)
        return cropTo(rect);
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
    setContent({});
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
        .frameRate = m_frameRate,
        .sources = {.systemSound = m_state.systemAudioEnabled() && able.systemSound.isAvailable(),
                    .microphone = m_state.microphoneAudioEnabled() && able.microphone.isAvailable(),
                    .camera = m_state.webcamEnabled() && able.camera.isAvailable(),
                    .microphoneDevice = m_state.microphoneDevice(),
                    .cameraDevice = m_state.webcamDevice()}};
    if (const auto& window = m_state.selectedWindow())
        request.windowID = window->windowID;
    if (isDesktopToAsk())
        request.area = {}; // selected on what has been chosen
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
            auto content = isChosen ? recorder->chosen() : std::optional<capture::ChosenContent>();
            return [this, request, recorder, isChosen, content] {
                chosen(request, recorder, isChosen, content);
            };
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
                           bool isChosen, std::optional<capture::ChosenContent> content) {
    if (request != m_request)
        return;
    if (!isChosen)
        return cancelPreparation();
    m_chosen = recorder;
    setContent(std::move(content));
    const bool isOnPicture = m_content && m_state.captureMode() == model::CaptureMode::area;
    if (isOnPicture && m_services.overlays.isScreen(*m_content))
        return freezeScreen();
    if (m_countdown > 0)
        return beginCountdown();
    if (m_content && m_content->isRestored)
        return setPreparation(Preparation::confirming);
    startRecording();
}

/// Who has ended it need not be told.
void RecordingFlow::checkSharing() {
    if (!m_chosen)
        return;
    m_services.tasks.run(
        [this, recorder = m_chosen, request = m_request]() -> TaskRunner::Continuation {
            if (recorder->isShared())
                return {};
            return [this, request] {
                if (request == m_request)
                    cancelPreparation();
            };
        });
}

void RecordingFlow::confirmChosen() {
    if (isConfirming())
        startRecording();
}

void RecordingFlow::beginCountdown() {
    setWindowsHidden(false);
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

void RecordingFlow::setContent(std::optional<capture::ChosenContent> content) {
    if (!m_content && !content)
        return;
    m_content = std::move(content);
    m_sharingTimer = m_content ? m_services.timers.repeat(1s, [this] { checkSharing(); }) : nullptr;
    Q_EMIT chosenContentChanged();
}

void RecordingFlow::setCountdownRemaining(int seconds) {
    if (m_countdownRemaining == seconds)
        return;
    m_countdownRemaining = seconds;
    Q_EMIT countdownRemainingChanged();
}

} // namespace vantro::app::flows
