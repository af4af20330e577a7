#pragma once

#include "app/flows/TaskRunner.h"
#include "app/state/AppState.h"
#include "model/Recording.h"

#include <functional>

namespace vantro::app::flows {

/// Makes a finished recording out of what a run of the program left behind. Blocks; called on a
/// worker thread; throws std::exception.
using Recoverer = std::function<model::Recording(const std::filesystem::path& movie)>;

/// Offers the last recording again when the program ended, or was killed, before a project held it.
/// Main thread.
class RecoveryFlow : public QObject {
    Q_OBJECT

  public:
    RecoveryFlow(AppState& state, TaskRunner& tasks, Recoverer recoverer);

    /// Offers the recording of this movie, if it is still there and nobody is at work on it.
    void offer(const std::filesystem::path& movie);
    bool isOffered() const { return !m_movie.empty(); }
    /// Shows the offered recording in the editor. A failure is shown and withdraws the offer.
    void recover();
    /// The room on disk that the offered recording takes.
    std::uintmax_t offeredBytes() const;
    /// Withdraws the offer until the program starts again; the files stay where they are.
    void dismiss();
    /// Withdraws the offer and deletes the recording's files.
    void discard();

  Q_SIGNALS:
    void offeredChanged();
    /// The user does not want the recording; it is offered no more.
    void discarded();

  private:
    void show(const model::Recording& recording);
    void withdraw();

    AppState& m_state;
    TaskRunner& m_tasks;
    Recoverer m_recoverer;
    std::filesystem::path m_movie;
};

} // namespace vantro::app::flows
