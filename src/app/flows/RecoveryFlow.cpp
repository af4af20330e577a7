#include "app/flows/RecoveryFlow.h"

#include "app/files/RecordingRecovery.h"
#include "app/flows/ErrorText.h"

#include <system_error>

namespace vantro::app::flows {
namespace {

constexpr auto recoveryFailed = model::VantroError::Kind::assetWriterFailed;

} // namespace

RecoveryFlow::RecoveryFlow(AppState& state, TaskRunner& tasks, Recoverer recoverer)
    : m_state(state), m_tasks(tasks), m_recoverer(std::move(recoverer)) {}

void RecoveryFlow::offer(const std::filesystem::path& recordingURL) {
    std::error_code error;
    if (recordingURL.empty() || !std::filesystem::is_regular_file(recordingURL, error) ||
        files::isBeingRecorded(recordingURL))
        return;
    m_recordingURL = recordingURL;
    Q_EMIT offeredChanged();
}

void RecoveryFlow::recover() {
    if (!isOffered())
        return;
    m_tasks.run([this, recoverer = m_recoverer,
                 recordingURL = m_recordingURL]() -> TaskRunner::Continuation {
        try {
            return [this, finished = recoverer(recordingURL)] { show(finished); };
        } catch (const std::exception& failure) {
            return [this, text = failureText(failure, recoveryFailed)] {
                m_state.setError(text, recoveryFailed);
            };
        }
    });
    withdraw();
}

void RecoveryFlow::show(files::FinishedRecording finished) {
    if (m_state.phase() != AppPhase::idle())
        return;
    m_state.setRecordingURL(std::move(finished.recordingURL));
    m_state.setMetadataURL(std::move(finished.metadataURL));
    m_state.setMetadata(std::move(finished.metadata));
    m_state.setEditableClickEvents(std::move(finished.editableClickEvents));
    m_state.setSegments(std::move(finished.segments));
    m_state.setPhase(AppPhase::previewing());
}

void RecoveryFlow::dismiss() {
    if (!isOffered())
        return;
    withdraw();
    Q_EMIT dismissed();
}

void RecoveryFlow::withdraw() {
    m_recordingURL.clear();
    Q_EMIT offeredChanged();
}

} // namespace vantro::app::flows
