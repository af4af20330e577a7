#include "app/flows/RecordingPreparation.h"

#include "app/files/RecordingFolder.h"
#include "app/flows/ChosenRequest.h"
#include "app/flows/ErrorText.h"
#include "base/Fatal.h"
#include "capture/RecordingTarget.h"

#include <algorithm>
#include <utility>

namespace vantro::app::flows {

using namespace std::chrono_literals;

RecordingPreparation::RecordingPreparation(AppState& state, const PreparationServices& services)
    : m_state(state)
    , m_services(services)
    , m_countdown(
          services.timers, services.tasks, [this] { Q_EMIT countdownRemainingChanged(); },
          [this] { finish(); }) {
    connect(&m_state, &AppState::phaseChanged, this, [this] {
        if (m_state.phase() == AppPhase::previewing())
            cancel();
    });
}

/// Whoever waits for the user's choice must not be waited for.
RecordingPreparation::~RecordingPreparation() {
    m_choice.request_stop();
}

void RecordingPreparation::enter(Step step) {
    const auto before = std::exchange(m_step, step);
    base::require(mayFollow(before, step), "the preparations of a recording are out of order");
    using enum PreparationStep;
    if ((before == pickingWindow) != (step == pickingWindow))
        Q_EMIT windowPickerShownChanged();
    const bool isAsking = step == choosing && isDesktopToAsk();
    const bool isShown = (before == confirming) != (step == confirming);
    if (std::exchange(m_isDesktopAsking, isAsking) != isAsking || isShown)
        Q_EMIT desktopAskingChanged();
}

void RecordingPreparation::begin() {
    if (isConfirming())
        return confirm(); // as a key for it is pressed again
    if (!mayBegin())
        return;
    m_choosesAnew = false;
    switch (m_state.captureMode()) {
    case model::CaptureMode::screen:
        return captureScreen();
    case model::CaptureMode::window:
        return isDesktopToAsk() ? choose() : enter(Step::pickingWindow);
    case model::CaptureMode::area:
        return isDesktopToAsk() ? choose() : captureArea();
    }
}

void RecordingPreparation::chooseAnew() {
    if (isConfirming() || m_step == Step::countingDown)
        cancel();
    if (!mayBegin())
        return;
    m_choosesAnew = true;
    choose();
}

bool RecordingPreparation::mayBegin() {
    return m_state.phase() == AppPhase::idle() && m_step == Step::none && isFolderUsable();
}

/// Whoever has chosen a folder is told that it is gone before they choose what to record.
bool RecordingPreparation::isFolderUsable() {
    const auto problem = m_folder ? files::recordingsFolderProblem(*m_folder) : std::string();
    if (!problem.empty())
        m_state.setError(tr("recordings cannot go to %1. The settings take another folder.")
                             .arg(QString::fromStdString(problem))
                             .toStdString(),
                         model::VantroError::Kind::captureStartFailed);
    return problem.empty();
}

bool RecordingPreparation::isDesktopToAsk() const {
    return !m_services.platform.abilities().listsContent.isAvailable();
}

/// The display that was chosen, while it is attached, else the main one.
void RecordingPreparation::captureScreen() {
    if (const auto displays = m_services.platform.displays(); !displays.empty()) {
        const auto selected = std::ranges::find(displays, m_state.selectedDisplayID(),
                                                &capture::ShareableDisplay::displayID);
        const auto& display = selected != displays.end() ? *selected : displays.front();
        m_state.setSelectedRect(display.frame);
        m_state.setSelectedDisplayID(display.displayID);
    }
    choose();
}

void RecordingPreparation::windowSelected(const capture::ShareableWindow& window) {
    if (m_step != Step::pickingWindow)
        return;
    m_state.setSelectedWindow(window);
    m_state.setSelectedRect(window.frame);
    const auto displays = m_services.platform.displays();
    if (const auto* display = capture::displayUnder(window.frame, displays))
        m_state.setSelectedDisplayID(display->displayID);
    choose();
}

void RecordingPreparation::windowPickerCancelled() {
    if (m_step == Step::pickingWindow)
        cancel();
}

void RecordingPreparation::captureArea() {
    enter(Step::selectingArea);
    m_state.setPhase(AppPhase::selecting());
    m_services.tasks.onMain([this] {
        if (m_step != Step::selectingArea)
            return;
        auto overlay = m_services.overlays.show(overlayCallbacks());
        if (overlay == nullptr)
            return areaCancelled();
        m_state.setOverlayWindow(std::move(overlay));
    });
}

/// An answer leads to the overlay's end, which must not come while it is answering.
AreaOverlayCallbacks RecordingPreparation::overlayCallbacks() {
    auto& tasks = m_services.tasks;
    return {.onSelection =
                [this, &tasks](auto displayID, auto rect) {
                    tasks.onMain([this, displayID, rect] { areaSelected(displayID, rect); });
                },
            .onCancel = [this, &tasks] { tasks.onMain([this] { areaCancelled(); }); }};
}

/// The picture on which an area is selected stays still, and our own windows are not in it.
void RecordingPreparation::freezeScreen() {
    enter(Step::selectingArea);
    m_state.setPhase(AppPhase::selecting());
    Q_EMIT hidingWanted(true);
    m_services.tasks.run(
        [this, recorder = m_chosen, request = m_request]() -> TaskRunner::Continuation {
            recorder->awaitHiddenWindows();
            return [this, request, content = recorder->chosen()] {
                if (request == m_request)
                    selectOn(content);
            };
        });
}

void RecordingPreparation::selectOn(const std::optional<capture::ChosenContent>& content) {
    auto overlay = content && content->picture != nullptr
                       ? m_services.overlays.showOn(*content, overlayCallbacks())
                       : nullptr;
    if (overlay == nullptr)
        return areaCancelled();
    m_state.setOverlayWindow(std::move(overlay));
}

void RecordingPreparation::cropTo(const model::Rect& area) {
    m_services.tasks.run(
        [this, recorder = m_chosen, area, request = m_request]() -> TaskRunner::Continuation {
            try {
                recorder->crop(area);
                return [this, request] {
                    if (request == m_request)
                        countDownOrFinish();
                };
            } catch (const std::exception& failure) {
                auto text = failureText(failure, model::VantroError::Kind::captureStartFailed);
                return [this, request, text] { chooseFailed(request, text); };
            }
        });
}

void RecordingPreparation::areaSelected(std::uint32_t displayID, model::Rect rect) {
    if (m_step != Step::selectingArea)
        return;
    m_state.setOverlayWindow({});
    if (m_chosen)
        return cropTo(rect);
    m_state.setSelectedRect(rect);
    m_state.setSelectedDisplayID(displayID);
    choose();
}

void RecordingPreparation::areaCancelled() {
    if (m_step == Step::selectingArea)
        cancel();
}

void RecordingPreparation::cancel() {
    if (m_step == Step::none)
        return;
    ++m_request;
    m_choice.request_stop();
    m_chosen.reset();
    m_countdown.cancel();
    enter(Step::none);
    setContent({});
    m_state.setOverlayWindow({});
    if (m_state.phase() == AppPhase::selecting())
        m_state.setPhase(AppPhase::idle());
}

void RecordingPreparation::choose() {
    enter(Step::choosing);
    m_choice = std::stop_source();
    auto wanted = requestOf(m_state, m_services.platform.abilities());
    wanted.frameRate = m_frameRate;
    wanted.chooseAgain = m_choosesAnew;
    m_services.tasks.run([this, recorder = m_services.platform.makeRecorder(std::move(wanted)),
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

void RecordingPreparation::chooseFailed(int request, const std::string& message) {
    if (request != m_request)
        return;
    cancel();
    m_state.setError(message, model::VantroError::Kind::captureStartFailed);
}

void RecordingPreparation::chosen(int request, const std::shared_ptr<capture::Recorder>& recorder,
                                  bool isChosen, std::optional<capture::ChosenContent> content) {
    if (request != m_request)
        return;
    if (!isChosen)
        return cancel();
    m_chosen = recorder;
    setContent(std::move(content));
    const bool isOnPicture = m_content && m_state.captureMode() == model::CaptureMode::area;
    if (isOnPicture && m_services.overlays.isScreen(*m_content))
        return freezeScreen();
    if (m_seconds == 0 && m_content && m_content->isRestored)
        return enter(Step::confirming);
    countDownOrFinish();
}

/// Who has ended it need not be told.
void RecordingPreparation::checkSharing() {
    if (!m_chosen)
        return;
    m_services.tasks.run(
        [this, recorder = m_chosen, request = m_request]() -> TaskRunner::Continuation {
            if (recorder->isShared())
                return {};
            return [this, request] {
                if (request == m_request)
                    cancel();
            };
        });
}

void RecordingPreparation::confirm() {
    if (isConfirming())
        finish();
}

void RecordingPreparation::countDownOrFinish() {
    if (m_seconds == 0)
        return finish();
    Q_EMIT hidingWanted(false);
    enter(Step::countingDown);
    m_countdown.start(m_seconds);
}

/// From here on it is a recording.
void RecordingPreparation::finish() {
    ++m_request;
    enter(Step::none);
    setContent({});
    Q_EMIT ready(std::exchange(m_chosen, nullptr));
}

void RecordingPreparation::setContent(std::optional<capture::ChosenContent> content) {
    if (!m_content && !content)
        return;
    m_content = std::move(content);
    m_sharingTimer = m_content ? m_services.timers.repeat(1s, [this] { checkSharing(); }) : nullptr;
    Q_EMIT chosenContentChanged();
}

} // namespace vantro::app::flows
