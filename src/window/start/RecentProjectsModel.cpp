#include "window/start/RecentProjectsModel.h"

#include "app/flows/ProjectFlow.h"
#include "ui/Preferences.h"

#include <QDir>
#include <QFileInfo>

namespace vantro::window::start {
namespace {

/// With the home folder as "~".
QString shortFolder(const QString& path) {
    const auto folder = QFileInfo(path).path();
    const auto home = QDir::homePath();
    return folder == home || folder.startsWith(home + u'/') ? u'~' + folder.mid(home.size())
                                                            : folder;
}

} // namespace

RecentProjectsModel::RecentProjectsModel(ui::Preferences& preferences,
                                         app::flows::ProjectFlow& projects,
                                         app::flows::TaskRunner& tasks)
    : m_preferences(preferences), m_projects(projects), m_tasks(tasks) {
    for (const auto used : {&app::flows::ProjectFlow::saved, &app::flows::ProjectFlow::opened})
        connect(&projects, used, &preferences, &ui::Preferences::addRecentProject);
    connect(&preferences, &ui::Preferences::recentProjectsChanged, this,
            &RecentProjectsModel::listed);
    listed();
}

void RecentProjectsModel::listed() {
    beginResetModel();
    m_paths = m_preferences.recentProjects();
    endResetModel();
    Q_EMIT countChanged();
    refresh();
}

void RecentProjectsModel::refresh() {
    m_tasks.run([this, paths = m_paths]() -> app::flows::TaskRunner::Continuation {
        QSet<QString> gone;
        for (const auto& path : paths)
            if (!QFileInfo::exists(path))
                gone.insert(path);
        return [this, gone] {
            m_missing = gone;
            if (rowCount() > 0)
                Q_EMIT dataChanged(index(0), index(rowCount() - 1));
        };
    });
}

int RecentProjectsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_paths.size());
}

QVariant RecentProjectsModel::data(const QModelIndex& index, int role) const {
    const auto path = m_paths.value(index.row());
    switch (role) {
    case name:
        return QFileInfo(path).completeBaseName();
    case folder:
        return shortFolder(path);
    case missing:
        return m_missing.contains(path);
    default:
        return {};
    }
}

QHash<int, QByteArray> RecentProjectsModel::roleNames() const {
    return {{name, "name"}, {folder, "folder"}, {missing, "missing"}};
}

void RecentProjectsModel::open(int row) {
    if (row >= 0 && row < rowCount())
        m_projects.open(m_paths[row].toStdString());
}

void RecentProjectsModel::forget(int row) {
    if (row >= 0 && row < rowCount())
        m_preferences.removeRecentProject(m_paths[row]);
}

} // namespace vantro::window::start
