#pragma once

#include "app/flows/FilePanels.h"
#include "app/flows/TaskRunner.h"
#include "app/state/AppState.h"

namespace vantro::app::flows {

/// Saves the edit as a project package and opens one. Files are read, linked and written on the
/// worker thread of `tasks`, since a package on another file system takes a copy of the movie.
/// One operation at a time; what is asked for meanwhile does nothing. Main thread.
class ProjectFlow : public QObject {
    Q_OBJECT

  public:
    enum class Activity { none, asking, working };

    ProjectFlow(AppState& state, FilePanels& panels, TaskRunner& tasks);

    /// Where the project was saved or opened last; asks for a place where there is none yet.
    void saveProject();
    /// Asks for a place.
    void saveProjectAs();
    void openProject();
    /// openProject without its panel.
    void openPackage(const std::filesystem::path& packagePath);

    Activity activity() const { return m_activity; }
    bool isBusy() const { return m_activity != Activity::none; }

  Q_SIGNALS:
    void activityChanged();
    void saved(const QString& path);
    void opened(const QString& path);

  private:
    bool mayBeginSaving();
    void askAndSave();
    bool mayOpen() const;
    void write(const std::filesystem::path& packagePath);
    void setActivity(Activity activity);

    AppState& m_state;
    FilePanels& m_panels;
    TaskRunner& m_tasks;
    Activity m_activity = Activity::none;
};

} // namespace vantro::app::flows
