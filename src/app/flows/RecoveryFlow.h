#pragma once

#include "app/files/UnsavedRecordings.h"
#include "app/flows/ProjectFlow.h"
#include "app/flows/TaskRunner.h"
#include "app/state/AppState.h"

#include <optional>
#include <vector>

namespace vantro::app::flows {

/// Knows the recordings that no project holds, puts them into the editor and deletes them when the
/// user says so, and offers one that was interrupted.
///
/// They are looked for whenever a new recording could begin. Lengths and pictures come one after
/// the other, only then, so that nothing disturbs a recording. Main thread; `tasks` reads the disk.
class RecoveryFlow : public QObject {
    Q_OBJECT

  public:
    struct Listed {
        files::UnsavedRecording recording;
        std::optional<files::RecordingDetails> details; ///< none until they have been found
    };

    RecoveryFlow(AppState& state, ProjectFlow& projects, TaskRunner& tasks);

    /// Looks for recordings; the first one that is found interrupted is offered.
    void find();
    /// The newest first.
    const std::vector<Listed>& recordings() const { return m_recordings; }
    void open(const std::filesystem::path& movie);

    /// Asks whether the recording is to be deleted.
    void askDelete(const std::filesystem::path& movie);
    /// What the user is asked about; null when nothing.
    const Listed* askedToDelete() const;
    void keep();
    void deleteAsked();

    /// Offers the recording of this movie, if it is still there and nobody is at work on it.
    void offer(const std::filesystem::path& movie);
    bool isOffered() const { return !m_offered.empty(); }
    /// Shows the offered recording in the editor. A failure is shown and withdraws the offer.
    void recover();
    /// The room on disk that the offered recording takes.
    std::uintmax_t offeredBytes() const;
    /// Withdraws the offer until the program starts again; the recording stays in the list.
    void dismiss();

  Q_SIGNALS:
    void recordingsChanged();
    /// The picture and length of one row have come.
    void detailsChanged(int row);
    void offeredChanged();
    void askedToDeleteChanged();

  private:
    void found(const std::vector<files::UnsavedRecording>& recordings);
    void lookCloser();
    void withdraw();

    AppState& m_state;
    ProjectFlow& m_projects;
    TaskRunner& m_tasks;
    std::vector<Listed> m_recordings;
    std::filesystem::path m_offered;
    std::filesystem::path m_askedToDelete;
    bool m_isLooking = false;
    bool m_hasOffered = false; ///< once in a run of the program
};

} // namespace vantro::app::flows
