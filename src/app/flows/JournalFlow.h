#pragma once

#include "app/files/EditJournal.h"
#include "app/flows/MainTimers.h"
#include "app/flows/ProjectFlow.h"
#include "app/flows/TaskRunner.h"
#include "app/state/AppState.h"

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace vantro::app::flows {

/// Keeps what is edited and not saved in a journal, and offers it again when the program ended
/// without an answer about it. Main thread; journals are read and written by `tasks`.
class JournalFlow : public QObject {
    Q_OBJECT

  public:
    /// At most this long after a change its writing begins, so that with the writing itself less
    /// than two seconds are lost. One write at a time, whatever is changed meanwhile.
    static constexpr std::chrono::milliseconds interval{1000};

    JournalFlow(AppState& state, ProjectFlow& projects, MainTimers& timers, TaskRunner& tasks,
                std::filesystem::path directory);
    /// Writes what is not written yet.
    ~JournalFlow() override;

    /// Looks for what earlier runs of the program have left behind, and offers it. What cannot be
    /// read is told and set aside.
    void find();
    bool isOffered() const { return !m_offers.empty(); }
    /// What the project of the offered edit is called.
    std::string offeredName() const;
    /// Opens the project with the offered edit. A failure is shown; the journal stays.
    void restore();
    /// Deletes the offered journal, and nothing else.
    void discardOffered();
    /// Withdraws the offer until the program starts again.
    void dismiss();

    /// Gives up what is not saved and then calls `then`. A failure is shown instead, and `failed`
    /// is called; the next time succeeds.
    void discard(std::function<void()> then, std::function<void()> failed = {});

  Q_SIGNALS:
    void offeredChanged();

  private:
    struct Offer {
        std::shared_ptr<files::EditJournal> journal;
        files::JournalledEdit edit;
    };
    class Keeper;

    files::JournalledEdit unsavedEdit() const;
    void documentChanged();
    void tick();
    void write();
    void written(const std::string& problem);
    /// `which` is called by the task.
    void remove(std::function<std::shared_ptr<files::EditJournal>()> which,
                std::function<void()> then, std::function<void()> failed);
    Offer takeOffer();

    AppState& m_state;
    ProjectFlow& m_projects;
    MainTimers& m_timers;
    TaskRunner& m_tasks;
    std::filesystem::path m_directory;
    std::shared_ptr<Keeper> m_keeper; ///< used by tasks only
    std::unique_ptr<MainTimer> m_timer;
    bool m_isDirty = false;
    bool m_isWriting = false;
    bool m_hasJournal = false;
    bool m_hasComplained = false;
    std::vector<Offer> m_offers; ///< the next one first
};

} // namespace vantro::app::flows
