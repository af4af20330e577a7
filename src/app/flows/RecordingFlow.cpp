#include "app/flows/RecordingFlow.h"

#include "app/files/FinishRecording.h"
#include "app/files/ProjectPackage.h"
#include "app/files/RecordingFolder.h"
#include "app/flows/ErrorText.h"

#include <utility>

namespace vantro::app::flows {

using namespace std::chrono_literals;

RecordingFlow::RecordingFlow(AppState& state, RecordingServices services)
    : m_state(state), m_services(services) {
    connect(&m_state, &AppState::phaseChanged, this, [this] {
        if (m_state.phase() == AppPhase::previewing())
            cancelPreparation();
        if (m_state.phase() != AppPhase::recording() && m_state.phase() != AppPhase::selecting())
            setWindowsHidden(false);
    });
}

/// Whoever waits for the user's choice must not be waited for.
RecordingFlow::~RecordingFlow() {
    m_choice.request_stop();
}

/// A window's own picture has no others in it.
bool RecordingFlow::hasToHideWindows() const {
    return m_state.captureMode() != model::CaptureMode::window &&
           !m_services.platform.abilities().ownWindowsLeftOut.isAvailable();
}

void RecordingFlow::startRecording() {
    setPreparation(Preparation::none);
    setContent({});
    m_state.setPhase(AppPhase::recording());
    m_state.setRecordingName(files::defaultRecordingName());
    setElapsedSeconds(0);
    setRecorderStatus({});
    m_outputURL = files::makeRecordingDirectory(m_folder) / files::package::recordingFile;
    m_disk = {};
    m_isDiskTold = false;
    m_stillness = {};
    m_whyStopped.clear();
    setStopNotice({});
    const auto recorder = std::exchange(m_chosen, nullptr);
    m_state.setRecorder(recorder);
    m_secondTimer = m_services.timers.repeat(1s, [this] { tickSecond(); });
    setWindowsHidden(hasToHideWindows());
    m_services.tasks.run([this, recorder, outputURL = m_outputURL, hidden = m_areWindowsHidden,
                          request = ++m_request]() -> TaskRunner::Continuation {
        try {
            if (const auto problem = files::diskProblem(outputURL); !problem.empty())
                throw model::VantroError(model::VantroError::Kind::captureStartFailed, problem);
            if (hidden)
                recorder->awaitHiddenWindows();
            if (recorder->start(outputURL))
                return {};
            return [this, request] { takenBack(request); };
        } catch (const std::exception& failure) {
            auto text = failureText(failure, model::VantroError::Kind::captureStartFailed);
            return [this, request, text] { startFailed(request, text); };
        }
    });
}

void RecordingFlow::tickSecond() {
    setElapsedSeconds(m_elapsedSeconds + 1);
    const bool wasCapturing = m_recorderStatus.isCapturing();
    setRecorderStatus(m_state.recorder()->statistics());
    if (!m_recorderStatus.isCapturing())
        return wasCapturing ? followCondition() : void();
    if (m_stillness.hasRested(m_elapsedSeconds, m_recorderStatus))
        Q_EMIT nothingMoves();
    watchDisk();
}

/// Nothing is captured any more.
void RecordingFlow::followCondition() {
    setWindowsHidden(false);
    switch (m_recorderStatus.condition) {
    case capture::RecordingCondition::recording:
        break;
    case capture::RecordingCondition::userStopped:
        stopRecording();
        Q_EMIT endedByItself(tr("The desktop has ended the sharing."));
        break;
    case capture::RecordingCondition::streamStopped:
        Q_EMIT endedByItself(QString::fromStdString(m_recorderStatus.streamError));
        break;
    case capture::RecordingCondition::writerFailed:
        Q_EMIT endedByItself(tr("The recording cannot be written any more."));
        break;
    }
}

void RecordingFlow::watchDisk() {
    const auto use = m_services.diskUse(m_outputURL);
    if (!use)
        return;
    m_disk.add(m_elapsedSeconds, *use);
    const auto left = m_disk.secondsLeft();
    if (use->isFull())
        stopByItself(tr("The disk is nearly full."));
    else if (left && *left < files::DiskForecast::verySoon && !std::exchange(m_isDiskTold, true))
        Q_EMIT diskNearlyFull();
}

void RecordingFlow::stopByItself(const QString& why) {
    m_whyStopped = why;
    stopRecording();
    Q_EMIT endedByItself(why);
}

void RecordingFlow::startFailed(int request, const std::string& message) {
    if (request != m_request)
        return;
    m_state.setError(message, model::VantroError::Kind::captureStartFailed);
    takenBack(request);
}

/// Nothing of it is left.
void RecordingFlow::takenBack(int request) {
    if (request != m_request)
        return;
    ++m_request; // a stop asked for meanwhile has nothing left to stop
    m_secondTimer.reset();
    setStopping(false);
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
            const auto* error = dynamic_cast<const model::VantroError*>(&failure);
            if (error != nullptr && capture::wasTakenBack(*error, *recorder))
                return [this, request] { takenBack(request); };
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
    setStopNotice(m_whyStopped);
}

void RecordingFlow::setElapsedSeconds(double seconds) {
    if (m_elapsedSeconds == seconds)
        return;
    m_elapsedSeconds = seconds;
    Q_EMIT elapsedSecondsChanged();
}

void RecordingFlow::setStopNotice(const QString& notice) {
    if (std::exchange(m_stopNotice, notice) != notice)
        Q_EMIT stopNoticeChanged();
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

void RecordingFlow::setWindowsHidden(bool hidden) {
    if (std::exchange(m_areWindowsHidden, hidden) != hidden)
        Q_EMIT windowsHiddenChanged();
}

} // namespace vantro::app::flows
