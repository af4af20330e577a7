#pragma once

#include "app/flows/FilePanels.h"
#include "app/flows/ProjectReading.h"
#include "app/flows/TaskRunner.h"
#include "app/state/AppState.h"

#include <functional>
#include <memory>

namespace vantro::app::flows {

/// Saves the edit as a project and puts projects, recordings and movies into the editor. Asks
/// before an edit that is not saved is left.
///
/// What is in the editor is locked against other programs. Files are read, linked and written on
/// the worker thread of `tasks`, since a project on another file system takes a copy of the movie.
/// One operation at a time; what is asked for meanwhile does nothing. Main thread.
class ProjectFlow : public QObject {
    Q_OBJECT

  public:
    enum class Activity { none, asking, working };

    ProjectFlow(AppState& state, FilePanels& panels, TaskRunner& tasks,
                RecordingSources sources = {});

    /// Where the project was saved or opened last; asks for a place where there is none yet, or
    /// where the project may only be read.
    void saveProject();
    /// Asks for a place.
    void saveProjectAs();
    void openProject();
    /// Asks for a movie from elsewhere.
    void importMovie();
    /// A project, or a movie that becomes one without clicks.
    void open(const std::filesystem::path& path);
    /// A recording that lies where recordings are made.
    void openRecording(const std::filesystem::path& movie);
    /// The project or recording that an edit was made of, under that edit; `opened` is called then.
    /// It counts as modified, and the edit is one step.
    void openEdited(const files::JournalledEdit& edit, std::function<void()> opened);
    void newRecording();

    /// Deletes what is kept of an edit that is given up, and then calls `then`; a failure is shown,
    /// and `failed` is called.
    using Discard = std::function<void(std::function<void()> then, std::function<void()> failed)>;
    /// Who does that, before the editor shows something else; none: there is nothing to delete.
    void setDiscard(Discard discard) { m_discard = std::move(discard); }

    /// Does `action`, which ends the edit: at once where all is saved, else once the user has
    /// answered. Does nothing while an operation is under way.
    void leave(std::function<void()> action);
    /// The user is asked what to do about the edit.
    bool isLeaveAsked() const { return m_leaving == Leaving::asked; }
    /// Leaves when everything was saved; a failure, or no place, lets the edit stay.
    void saveAndLeave();
    void discardAndLeave();
    void stay();

    /// Why what was opened can only be read, until the user has seen it; else empty.
    const std::string& readOnlyNotice() const { return m_readOnlyNotice; }
    void dismissReadOnlyNotice();
    /// What cannot be shown of the background of what was opened, and why, until the user has seen
    /// it; else empty.
    const std::string& pictureNotice() const { return m_pictureNotice; }
    void dismissPictureNotice();
    /// Whether saving asks for another place.
    bool isReadOnly() const { return m_isReadOnly; }

    Activity activity() const { return m_activity; }
    bool isBusy() const { return m_activity != Activity::none; }

  Q_SIGNALS:
    void activityChanged();
    /// The question about leaving, or the notice, has come or gone.
    void questionChanged();
    void saved(const QString& path);
    void opened(const QString& path);

  private:
    /// no -> asked -> saving -> no
    ///         |                ^   saved, failed, no place
    ///         +----------------+   discarded, stays
    enum class Leaving { no, asked, saving };

    using Read = std::function<OpenedProject()>;

    bool mayBeginSaving();
    void save(bool asks);
    void askAndSave();
    bool mayOpen() const;
    void ask(PanelKind kind);
    void openWith(Read read, std::function<void()> then = {});
    void read(Read read, std::function<void()> then);
    void show(OpenedProject found, const std::function<void()>& then);
    void giveUpEdit(std::function<void()> then);
    void write(const std::filesystem::path& packagePath, files::ProjectForm form = {});
    void setActivity(Activity activity);
    void setLeaving(Leaving leaving);
    void endLeaving(bool leaves);
    void followRecording();

    AppState& m_state;
    FilePanels& m_panels;
    TaskRunner& m_tasks;
    RecordingSources m_sources;
    Activity m_activity = Activity::none;
    Leaving m_leaving = Leaving::no;
    std::function<void()> m_afterLeaving;
    std::shared_ptr<const files::ProjectLock> m_lock; ///< of what is in the editor
    bool m_isReadOnly = false;
    std::string m_readOnlyNotice;
    std::string m_pictureNotice;
    Discard m_discard;
};

} // namespace vantro::app::flows
