#include "app/flows/ProjectFlow.h"

#include "app/files/ProjectPackage.h"
#include "app/flows/ErrorText.h"

#include <expected>

namespace vantro::app::flows {
namespace {

constexpr auto saveFailed = model::VantroError::Kind::projectSaveFailed;
constexpr auto openFailed = model::VantroError::Kind::projectOpenFailed;

std::string trySave(const std::filesystem::path& packageURL,
                    const std::filesystem::path& recordingURL, const model::ProjectData& project) {
    try {
        files::saveProject(packageURL, recordingURL, project);
        return {};
    } catch (const std::exception& failure) {
        return failureText(failure, saveFailed);
    }
}

std::expected<model::ProjectData, std::string> tryRead(const std::filesystem::path& packageURL) {
    try {
        return files::readProjectFile(packageURL);
    } catch (const std::exception& failure) {
        return std::unexpected(failureText(failure, openFailed));
    }
}

} // namespace

ProjectFlow::ProjectFlow(AppState& state, FilePanels& panels, TaskRunner& tasks)
    : m_state(state), m_panels(panels), m_tasks(tasks) {}

void ProjectFlow::saveProject() {
    if (isBusy())
        return;
    if (!m_state.metadata() || !m_state.recordingURL())
        return m_state.setError("No recording metadata available", saveFailed);
    setActivity(Activity::asking);
    m_panels.ask(PanelKind::saveProject, m_state.recordingName() + files::package::extension,
                 [this](const auto& packageURL) {
                     setActivity(Activity::none);
                     if (packageURL)
                         write(*packageURL);
                 });
}

void ProjectFlow::write(const std::filesystem::path& packageURL) {
    const auto edit = m_state.projectData();
    const auto& movie = m_state.recordingURL();
    if (!edit || !movie)
        return; // reset while the panel was open
    setActivity(Activity::working);
    m_tasks.run([this, packageURL, sourceURL = *movie,
                 project = *edit]() -> TaskRunner::Continuation {
        const auto failure = trySave(packageURL, sourceURL, project);
        return [this, packageURL, sourceURL, failure] { wrote(packageURL, sourceURL, failure); };
    });
}

void ProjectFlow::wrote(const std::filesystem::path& packageURL,
                        const std::filesystem::path& sourceURL, const std::string& failure) {
    setActivity(Activity::none);
    if (!failure.empty())
        return m_state.setError(failure, saveFailed);
    Q_EMIT saved(QString::fromStdString(packageURL.string()));
    if (m_state.recordingURL() != sourceURL)
        return; // another recording has taken its place meanwhile
    m_state.setRecordingURL(packageURL / files::package::recordingFile);
    m_state.setProjectURL(packageURL);
}

bool ProjectFlow::mayOpen() const {
    return !isBusy() &&
           (m_state.phase() == AppPhase::idle() || m_state.phase() == AppPhase::previewing());
}

void ProjectFlow::openProject() {
    if (!mayOpen())
        return;
    setActivity(Activity::asking);
    m_panels.ask(PanelKind::openProject, {}, [this](const auto& packageURL) {
        setActivity(Activity::none);
        if (packageURL)
            openPackage(*packageURL);
    });
}

void ProjectFlow::openPackage(const std::filesystem::path& packageURL) {
    if (!mayOpen())
        return;
    setActivity(Activity::working);
    m_tasks.run([this, packageURL]() -> TaskRunner::Continuation {
        return [this, packageURL, project = tryRead(packageURL)]() mutable {
            setActivity(Activity::none);
            if (!project)
                m_state.setError(project.error(), openFailed);
            else if (mayOpen())
                show(packageURL, std::move(*project));
        };
    });
}

void ProjectFlow::show(const std::filesystem::path& packageURL, model::ProjectData project) {
    m_state.setRecordingURL(packageURL / files::package::recordingFile);
    m_state.setMetadata(std::move(project.metadata));
    m_state.setEditableClickEvents(std::move(project.editableClickEvents));
    m_state.setSegments(std::move(project.segments));
    m_state.setBackgroundSettings(std::move(project.backgroundSettings));
    m_state.setCanvasAspectRatio(project.canvasAspectRatio);
    m_state.setCursorScale(project.cursorScale);
    m_state.setWebcamPosition(project.webcamPosition);
    m_state.setWebcamSize(project.webcamSize);
    m_state.setRecordingName(std::move(project.recordingName));
    m_state.setProjectURL(packageURL);
    m_state.setPhase(AppPhase::previewing());
    Q_EMIT opened(QString::fromStdString(packageURL.string()));
}

void ProjectFlow::setActivity(Activity activity) {
    if (m_activity == activity)
        return;
    m_activity = activity;
    Q_EMIT activityChanged();
}

} // namespace vantro::app::flows
