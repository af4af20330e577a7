#include "app/flows/RecoveryFlow.h"

#include "app/files/RecordingFolder.h"
#include "app/files/RecordingRecovery.h"
#include "app/flows/ErrorText.h"

#include <algorithm>
#include <system_error>

namespace vantro::app::flows {
namespace {

constexpr auto recoveryFailed = model::VantroError::Kind::assetWriterFailed;
/// Rows beyond have no picture; one takes 80 kB.
constexpr std::size_t mostPictures = 100;

} // namespace

RecoveryFlow::RecoveryFlow(AppState& state, ProjectFlow& projects, TaskRunner& tasks)
    : m_state(state), m_projects(projects), m_tasks(tasks) {
    connect(&state, &AppState::phaseChanged, this, [this] {
        if (m_state.phase() == AppPhase::idle())
            find();
    });
}

void RecoveryFlow::find() {
    m_tasks.run([this]() -> TaskRunner::Continuation {
        return [this, recordings = files::unsavedRecordings()] { found(recordings); };
    });
}

void RecoveryFlow::found(const std::vector<files::UnsavedRecording>& recordings) {
    std::vector<Listed> listed;
    for (const auto& recording : recordings) {
        const auto known = std::ranges::find(m_recordings, recording, &Listed::recording);
        listed.push_back({recording, known == m_recordings.end()
                                         ? std::optional<files::RecordingDetails>()
                                         : known->details});
    }
    m_recordings = std::move(listed);
    Q_EMIT recordingsChanged();
    const auto interrupted =
        std::ranges::find_if(recordings, &files::UnsavedRecording::isInterrupted);
    if (interrupted != recordings.end() && !m_hasOffered)
        offer(interrupted->movie);
    lookCloser();
}

void RecoveryFlow::lookCloser() {
    const auto next =
        std::ranges::find_if(m_recordings, [](const Listed& listed) { return !listed.details; });
    const auto row = next - m_recordings.begin();
    if (m_isLooking || m_state.phase() != AppPhase::idle() || next == m_recordings.end() ||
        row >= static_cast<std::ptrdiff_t>(mostPictures))
        return;
    m_isLooking = true;
    m_tasks.run([this, recording = next->recording]() -> TaskRunner::Continuation {
        return [this, recording, details = files::recordingDetails(recording.movie)] {
            m_isLooking = false;
            const auto asked = std::ranges::find(m_recordings, recording, &Listed::recording);
            if (asked != m_recordings.end()) {
                asked->details = details;
                Q_EMIT detailsChanged(static_cast<int>(asked - m_recordings.begin()));
            }
            lookCloser();
        };
    });
}

void RecoveryFlow::open(const std::filesystem::path& movie) {
    m_projects.openRecording(movie);
}

void RecoveryFlow::askDelete(const std::filesystem::path& movie) {
    m_askedToDelete = movie;
    Q_EMIT askedToDeleteChanged();
}

const RecoveryFlow::Listed* RecoveryFlow::askedToDelete() const {
    const auto asked = std::ranges::find_if(m_recordings, [this](const Listed& listed) {
        return listed.recording.movie == m_askedToDelete;
    });
    return asked == m_recordings.end() ? nullptr : &*asked;
}

void RecoveryFlow::keep() {
    askDelete({});
}

void RecoveryFlow::deleteAsked() {
    m_tasks.run([this, movie = m_askedToDelete]() -> TaskRunner::Continuation {
        try {
            files::deleteRecording(movie);
            return {};
        } catch (const std::exception& failure) {
            return [this, text = failureText(failure, recoveryFailed)] {
                m_state.setError(text, recoveryFailed);
            };
        }
    });
    askDelete({});
    find();
}

void RecoveryFlow::offer(const std::filesystem::path& movie) {
    std::error_code error;
    if (movie.empty() || !std::filesystem::is_regular_file(movie, error) ||
        files::isBeingRecorded(movie))
        return;
    m_offered = movie;
    m_hasOffered = true;
    Q_EMIT offeredChanged();
}

void RecoveryFlow::recover() {
    if (!isOffered())
        return;
    m_projects.openRecording(m_offered);
    withdraw();
}

std::uintmax_t RecoveryFlow::offeredBytes() const {
    return isOffered() ? files::recordingSize(m_offered) : 0;
}

void RecoveryFlow::dismiss() {
    if (isOffered())
        withdraw();
}

void RecoveryFlow::withdraw() {
    m_offered.clear();
    Q_EMIT offeredChanged();
}

} // namespace vantro::app::flows
