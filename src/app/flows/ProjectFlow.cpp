#include "app/flows/ProjectFlow.h"

#include "app/files/FileNames.h"
#include "app/files/ProjectPackage.h"
#include "app/flows/ErrorText.h"

#include <expected>

namespace vantro::app::flows {
namespace {

constexpr auto saveFailed = model::VantroError::Kind::projectSaveFailed;
constexpr auto openFailed = model::VantroError::Kind::projectOpenFailed;

std::expected<model::Project, std::string> trySave(const std::filesystem::path& packagePath,
                                                   const model::Project& project) {
    try {
        return files::saveProject(packagePath, project, true);
    } catch (const std::exception& failure) {
        return std::unexpected(failureText(failure, saveFailed));
    }
}

std::expected<model::Project, std::string> tryRead(const std::filesystem::path& packagePath) {
    try {
        return files::readProjectFile(packagePath);
    } catch (const std::exception& failure) {
        return std::unexpected(failureText(failure, openFailed));
    }
}

} // namespace

ProjectFlow::ProjectFlow(AppState& state, FilePanels& panels, TaskRunner& tasks)
    : m_state(state), m_panels(panels), m_tasks(tasks) {}

void ProjectFlow::saveProject() {
    if (!mayBeginSaving())
        return;
    if (const auto& packagePath = m_state.projectPath())
        return write(*packagePath);
    askAndSave();
}

void ProjectFlow::saveProjectAs() {
    if (mayBeginSaving())
        askAndSave();
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
                 [this](const auto& packagePath) {
                     setActivity(Activity::none);
                     if (packagePath)
                         write(*packagePath);
                 });
}

void ProjectFlow::write(const std::filesystem::path& packagePath) {
    auto project = m_state.document().project();
    if (!project)
        return; // reset while the panel was open
    setActivity(Activity::working);
    m_tasks.run([this, packagePath, project = std::move(*project)]() -> TaskRunner::Continuation {
        return [this, packagePath, movie = project.recording.movie(),
                written = trySave(packagePath, project)] {
            setActivity(Activity::none);
            if (!written)
                return m_state.setError(written.error(), saveFailed);
            m_state.saved(*written, movie, packagePath);
            Q_EMIT saved(QString::fromStdString(packagePath.string()));
        };
    });
}

bool ProjectFlow::mayOpen() const {
    return !isBusy() &&
           (m_state.phase() == AppPhase::idle() || m_state.phase() == AppPhase::previewing());
}

void ProjectFlow::openProject() {
    if (!mayOpen())
        return;
    setActivity(Activity::asking);
    m_panels.ask(PanelKind::openProject, {}, [this](const auto& packagePath) {
        setActivity(Activity::none);
        if (packagePath)
            openPackage(*packagePath);
    });
}

void ProjectFlow::openPackage(const std::filesystem::path& packagePath) {
    if (!mayOpen())
        return;
    setActivity(Activity::working);
    m_tasks.run([this, packagePath]() -> TaskRunner::Continuation {
        return [this, packagePath, project = tryRead(packagePath)]() mutable {
            setActivity(Activity::none);
            if (!project)
                return m_state.setError(project.error(), openFailed);
            if (!mayOpen())
                return;
            m_state.show(std::move(*project), packagePath);
            Q_EMIT opened(QString::fromStdString(packagePath.string()));
        };
    });
}

void ProjectFlow::setActivity(Activity activity) {
    if (m_activity == activity)
        return;
    m_activity = activity;
    Q_EMIT activityChanged();
}

} // namespace vantro::app::flows
