#include "app/flows/RecoveryFlow.h"

#include "app/files/RecordingFolder.h"
#include "app/files/RecordingRecovery.h"
#include "app/flows/ErrorText.h"

#include <system_error>

namespace vantro::app::flows {
namespace {

constexpr auto recoveryFailed = model::VantroError::Kind::assetWriterFailed;

} // namespace

RecoveryFlow::RecoveryFlow(AppState& state, TaskRunner& tasks, Recoverer recoverer)
    : m_state(state), m_tasks(tasks), m_recoverer(std::move(recoverer)) {}

void RecoveryFlow::offer(const std::filesystem::path& movie) {
    std::error_code error;
    if (movie.empty() || !std::filesystem::is_regular_file(movie, error) ||
        files::isBeingRecorded(movie))
        return;
    m_movie = movie;
    Q_EMIT offeredChanged();
}

void RecoveryFlow::recover() {
    if (!isOffered())
        return;
    m_tasks.run([this, recoverer = m_recoverer, movie = m_movie]() -> TaskRunner::Continuation {
        try {
            return [this, finished = recoverer(movie)] { show(finished); };
        } catch (const std::exception& failure) {
            return [this, text = failureText(failure, recoveryFailed)] {
                m_state.setError(text, recoveryFailed);
            };
        }
    });
    withdraw();
}

void RecoveryFlow::show(const model::Recording& recording) {
    if (m_state.phase() != AppPhase::idle())
        return offer(recording.movie()); // for when what has begun meanwhile is over
    m_state.show({.name = m_state.recordingName(),
                  .recording = recording,
                  .edit = model::freshEdit(recording.metadata(), m_state.document().edit())});
}

std::uintmax_t RecoveryFlow::offeredBytes() const {
    return isOffered() ? files::recordingSize(m_movie) : 0;
}

void RecoveryFlow::dismiss() {
    if (isOffered())
        withdraw();
}

void RecoveryFlow::discard() {
    if (!isOffered())
        return;
    m_tasks.run([this, movie = m_movie]() -> TaskRunner::Continuation {
        try {
            files::deleteRecording(movie);
            return {};
        } catch (const std::exception& failure) {
            return [this, text = failureText(failure, recoveryFailed)] {
                m_state.setError(text, recoveryFailed);
            };
        }
    });
    withdraw();
    Q_EMIT discarded();
}

void RecoveryFlow::withdraw() {
    m_movie.clear();
    Q_EMIT offeredChanged();
}

} // namespace vantro::app::flows
