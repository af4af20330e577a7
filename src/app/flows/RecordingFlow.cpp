#include "app/flows/RecordingFlow.h"

#include "app/files/FinishRecording.h"
#include "app/files/ProjectPackage.h"
#include "app/files/RecordingFolder.h"
#include "app/files/UnsavedRecordings.h"
#include "app/flows/ErrorText.h"
#include "base/Fatal.h"
#include "base/Log.h"

#include <cmath>
#include <utility>

namespace vantro::app::flows {

using namespace std::chrono_literals;

namespace {

/// It is called the same when it is listed as not saved.
void keepName(const std::filesystem::path& movie, const std::string& name) {
    try {
        files::nameRecording(movie, name);
    } catch (const std::exception& error) { // the recording matters more than its name
        base::logInfo("{}: {}", movie.string(), error.what());
    }
}

} // namespace

RecordingFlow::RecordingFlow(AppState& state, RecordingServices services)
    : m_state(state)
    , m_services(std::move(services))
    , m_preparation(
          state, {m_services.platform, m_services.overlays, m_services.timers, m_services.tasks}) {
    connect(&m_preparation, &RecordingPreparation::hidingWanted, this,
            &RecordingFlow::setWindowsHidden);
    connect(&m_preparation, &RecordingPreparation::ready, this, &RecordingFlow::start);
    connect(&m_state, &AppState::phaseChanged, this, [this] {
        if (m_state.phase() != AppPhase::recording())
            setCourse(Course::none);
        if (m_state.phase() != AppPhase::recording() && m_state.phase() != AppPhase::selecting())
            setWindowsHidden(false);
    });
}

/// A window's own picture has no others in it.
bool RecordingFlow::hasToHideWindows() const {
    return m_state.captureMode() != model::CaptureMode::window &&
           !m_services.platform.abilities().ownWindowsLeftOut.isAvailable();
}

void RecordingFlow::start(const std::shared_ptr<capture::Recorder>& recorder) {
    m_state.setPhase(AppPhase::recording());
    m_state.setRecordingName(files::defaultRecordingName());
    setElapsedSeconds(0);
    m_ticks = 0;
    setCourse(Course::running);
    setRecorderStatus({});
    m_outputURL =
        files::makeRecordingDirectory(m_preparation.folder()) / files::package::recordingFile;
    m_disk = {};
    m_isDiskTold = false;
    m_stillness = {};
    m_whyStopped.clear();
    setStopNotice({});
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
    ++m_ticks;
    const bool wasCapturing = m_recorderStatus.isCapturing();
    setRecorderStatus(m_state.recorder()->statistics());
    if (!isPaused())
        setElapsedSeconds(std::floor(m_ticks - base::inSeconds(m_recorderStatus.pausedFor)));
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
    m_state.setPhase(AppPhase::idle());
}

void RecordingFlow::pause() {
    if (m_course != Course::running)
        return;
    m_state.recorder()->pause();
    setCourse(Course::paused);
}

void RecordingFlow::resume() {
    if (m_course != Course::paused)
        return;
    m_state.recorder()->resume();
    setCourse(Course::running);
}

void RecordingFlow::pauseOrResume() {
    isPaused() ? resume() : pause();
}

void RecordingFlow::stopRecording() {
    if (m_course != Course::running && m_course != Course::paused)
        return;
    setCourse(Course::stopping);
    m_secondTimer.reset();
    m_services.tasks.run([this, recorder = m_state.recorder(), outputURL = m_outputURL,
                          name = m_state.recordingName(),
                          request = m_request]() -> TaskRunner::Continuation {
        try {
            const auto recording = files::finishRecording(outputURL, recorder->stop());
            keepName(outputURL, name);
            return [this, request, recording] { recordingFinished(request, recording); };
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
    m_state.setError(message, model::VantroError::Kind::assetWriterFailed);
    m_state.setPhase(AppPhase::idle());
    Q_EMIT leftBehind(QString::fromStdString(m_outputURL.string()));
}

void RecordingFlow::recordingFinished(int request, const model::Recording& recording) {
    if (request != m_request)
        return;
    m_state.show({.name = m_state.recordingName(),
                  .recording = recording,
                  .edit = model::freshEdit(recording.metadata(), m_state.document().edit(),
                                           m_state.look())});
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

bool RecordingFlow::mayFollow(Course before, Course after) {
    switch (after) {
    case Course::none:
        return true;
    case Course::running:
        return before == Course::none || before == Course::paused;
    case Course::paused:
        return before == Course::running;
    case Course::stopping:
        return before == Course::running || before == Course::paused;
    }
    return false;
}

void RecordingFlow::setCourse(Course course) {
    const auto before = m_course;
    if (before == course)
        return;
    base::require(mayFollow(before, course), "a recording goes on as it cannot");
    m_course = course;
    if (before == Course::stopping || course == Course::stopping)
        Q_EMIT stoppingChanged();
    if (before == Course::paused || course == Course::paused)
        Q_EMIT pausedChanged();
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
