#include "app/flows/ProjectFlow.h"

#include "app/files/FileNames.h"
#include "app/files/ProjectPackage.h"
#include "app/files/ProjectStores.h"
#include "app/flows/ErrorText.h"
#include "base/Fatal.h"

namespace vantro::app::flows {
namespace {

constexpr auto saveFailed = model::VantroError::Kind::projectSaveFailed;
constexpr auto openFailed = model::VantroError::Kind::projectOpenFailed;

std::expected<files::SavedProject, std::string>
trySave(const files::ProjectStore& store, const std::filesystem::path& packagePath,
        const model::Project& project, const std::shared_ptr<const files::ProjectLock>& held) {
    try {
        return store.save(packagePath, project, true, held);
    } catch (const std::exception& failure) {
        return std::unexpected(failureText(failure, saveFailed));
    }
}

} // namespace

ProjectFlow::ProjectFlow(AppState& state, FilePanels& panels, TaskRunner& tasks,
                         RecordingSources sources)
    : m_state(state), m_panels(panels), m_tasks(tasks), m_sources(std::move(sources)) {
    connect(&state, &AppState::recordingPathChanged, this, &ProjectFlow::followRecording);
}

/// What is shown by others is locked as well, and nothing is once it is left.
void ProjectFlow::followRecording() {
    const auto movie = m_state.recordingPath();
    if (!movie) {
        m_lock.reset();
        m_isReadOnly = false;
        return;
    }
    const auto folder = movie->parent_path();
    if (m_isReadOnly || (m_lock && m_lock->isOf(folder)))
        return;
    m_lock = files::ProjectLock::take(folder).value_or(nullptr);
}

void ProjectFlow::saveProject() {
    save(m_isReadOnly);
}

void ProjectFlow::saveProjectAs() {
    save(true);
}

void ProjectFlow::save(bool asks) {
    if (!mayBeginSaving())
        return endLeaving(false);
    const auto place = m_state.projectPath();
    if (asks || !place)
        return askAndSave();
    write(*place);
}

bool ProjectFlow::mayBeginSaving() {
    if (isBusy())
        return false;
    if (!m_state.document().recording())
        m_state.setError("No recording metadata available", saveFailed);
    return m_state.document().recording().has_value();
}

void ProjectFlow::askAndSave() {
    setActivity(Activity::asking);
    m_panels.ask(PanelKind::saveProject,
                 files::safeFileName(m_state.recordingName()) + files::package::extension,
                 [this](const auto& chosen) {
                     setActivity(Activity::none);
                     if (chosen)
                         write(chosen->path, chosen->form);
                     else
                         endLeaving(false);
                 });
}

void ProjectFlow::write(const std::filesystem::path& packagePath, files::ProjectForm form) {
    auto project = m_state.document().project();
    if (!project)
        return endLeaving(false); // reset while the panel was open
    setActivity(Activity::working);
    m_tasks.run([this, packagePath, form, project = std::move(*project),
                 held = m_lock]() -> TaskRunner::Continuation {
        return [this, packagePath, movie = project.recording.movie(),
                written = trySave(files::storeOf(packagePath, form), packagePath, project, held)] {
            setActivity(Activity::none);
            if (!written) {
                m_state.setError(written.error(), saveFailed);
                return endLeaving(false);
            }
            if (m_state.recordingPath() == movie) {
                m_lock = written->lock;
                m_isReadOnly = false;
            }
            m_state.saved(written->project, movie, packagePath);
            Q_EMIT saved(QString::fromStdString(packagePath.string()));
            endLeaving(!m_state.document().isModified());
        };
    });
}

bool ProjectFlow::mayOpen() const {
    return !isBusy() &&
           (m_state.phase() == AppPhase::idle() || m_state.phase() == AppPhase::previewing());
}

void ProjectFlow::openProject() {
    ask(PanelKind::openProject);
}

void ProjectFlow::importMovie() {
    ask(PanelKind::importMovie);
}

void ProjectFlow::ask(PanelKind kind) {
    if (!mayOpen())
        return;
    setActivity(Activity::asking);
    m_panels.ask(kind, {}, [this](const auto& chosen) {
        setActivity(Activity::none);
        if (chosen)
            open(chosen->path);
    });
}

void ProjectFlow::open(const std::filesystem::path& path) {
    if (files::hasMovieName(path))
        return openWith(
            [import = m_sources.import, path] { return OpenedProject{.project = import(path)}; });
    openWith([path] { return readPackage(path); });
}

void ProjectFlow::openRecording(const std::filesystem::path& movie) {
    const NewEdit begin{.choices = m_state.document().edit(), .look = m_state.look()};
    openWith([recover = m_sources.recover, movie, begin] {
        return readRecording(recover, movie, begin);
    });
}

void ProjectFlow::openEdited(const files::JournalledEdit& edit, std::function<void()> opened) {
    openWith([recover = m_sources.recover, edit] { return readEdited(recover, edit); },
             [this, edit, opened = std::move(opened)] {
                 m_state.document().rename(edit.project.name);
                 m_state.document().apply(edit.project.edit,
                                          {QT_TRANSLATE_NOOP("Edit", "Restore Changes")});
                 opened();
             });
}

void ProjectFlow::newRecording() {
    leave([this] { giveUpEdit([this] { m_state.reset(); }); });
}

void ProjectFlow::openWith(Read reading, std::function<void()> then) {
    if (!mayOpen())
        return;
    leave([this, reading = std::move(reading), then = std::move(then)] { read(reading, then); });
}

void ProjectFlow::read(Read reading, std::function<void()> then) {
    setActivity(Activity::working);
    m_tasks.run([this, reading = std::move(reading), then = std::move(then),
                 edit = m_state.document().edit()]() -> TaskRunner::Continuation {
        try {
            return [this, found = reading(), then, edit] {
                setActivity(Activity::none);
                if (!mayOpen())
                    return;
                if (m_state.document().edit() == edit)
                    return giveUpEdit([this, found, then] { show(found, then); });
                leave([this, found, then] { // edited meanwhile
                    giveUpEdit([this, found, then] { show(found, then); });
                });
            };
        } catch (const std::exception& failure) {
            return [this, text = failureText(failure, openFailed)] {
                setActivity(Activity::none);
                m_state.setError(text, openFailed);
            };
        }
    });
}

/// The user has said so, where it is not saved. As long as something is left of it, it stays.
void ProjectFlow::giveUpEdit(std::function<void()> then) {
    if (!m_discard || !m_state.document().isModified())
        return then();
    setActivity(Activity::working);
    m_discard(
        [this, then = std::move(then)] {
            setActivity(Activity::none);
            then();
        },
        [this] { setActivity(Activity::none); });
}

void ProjectFlow::show(OpenedProject found, const std::function<void()>& then) {
    // A package that this window has open already stays its own.
    const bool isOwn = m_lock && found.package && m_lock->isOf(*found.package);
    if (!isOwn)
        m_lock = std::move(found.lock);
    m_isReadOnly = !isOwn && !found.whyReadOnly.empty();
    m_readOnlyNotice = m_isReadOnly ? found.whyReadOnly : std::string();
    m_pictureNotice = found.pictureProblem;
    auto& name = found.project.name; // a file's may be no text
    name = QString::fromStdString(name).toStdString();
    m_state.show(std::move(found.project), found.package);
    Q_EMIT questionChanged();
    if (then)
        then();
    if (found.package)
        Q_EMIT opened(QString::fromStdString(found.package->string()));
}

void ProjectFlow::leave(std::function<void()> action) {
    if (!m_state.document().isModified())
        return action();
    if (isBusy() || m_leaving != Leaving::no)
        return;
    m_afterLeaving = std::move(action);
    setLeaving(Leaving::asked);
}

void ProjectFlow::saveAndLeave() {
    base::require(m_leaving == Leaving::asked, "the user was asked");
    setLeaving(Leaving::saving);
    saveProject();
}

void ProjectFlow::discardAndLeave() {
    base::require(m_leaving == Leaving::asked, "the user was asked");
    endLeaving(true);
}

void ProjectFlow::stay() {
    endLeaving(false);
}

void ProjectFlow::endLeaving(bool leaves) {
    const auto action = std::exchange(m_afterLeaving, {});
    setLeaving(Leaving::no);
    if (leaves && action)
        action();
}

void ProjectFlow::setLeaving(Leaving leaving) {
    if (m_leaving == leaving)
        return;
    m_leaving = leaving;
    Q_EMIT questionChanged();
}

void ProjectFlow::dismissReadOnlyNotice() {
    m_readOnlyNotice.clear();
    Q_EMIT questionChanged();
}

void ProjectFlow::dismissPictureNotice() {
    m_pictureNotice.clear();
    Q_EMIT questionChanged();
}

void ProjectFlow::setActivity(Activity activity) {
    if (m_activity == activity)
        return;
    m_activity = activity;
    Q_EMIT activityChanged();
}

} // namespace vantro::app::flows
