#pragma once

#include "app/flows/TaskRunner.h"

#include <QAbstractListModel>
#include <QSet>
#include <QStringList>

#include <QtQml/qqmlregistration.h>

namespace vantro::app::flows {
class ProjectFlow;
} // namespace vantro::app::flows

namespace vantro::ui {
class Preferences;
} // namespace vantro::ui

namespace vantro::window::start {

/// The projects that were used last, those included that are gone: the user sees which, and may
/// take them off the list. Whether they are there is looked up away from the main thread, since
/// they may lie on a slow disk. Main thread.
class RecentProjectsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

  public:
    enum Role { name = Qt::UserRole, folder, missing };

    /// Adds what `projects` saves and opens.
    RecentProjectsModel(ui::Preferences& preferences, app::flows::ProjectFlow& projects,
                        app::flows::TaskRunner& tasks);

    /// Looks again which are there.
    Q_INVOKABLE void refresh();
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Rows that are not there do nothing.
    Q_INVOKABLE void open(int row);
    /// Takes a project off the list; it stays where it is.
    Q_INVOKABLE void forget(int row);

  Q_SIGNALS:
    void countChanged();

  private:
    void listed();

    ui::Preferences& m_preferences;
    app::flows::ProjectFlow& m_projects;
    app::flows::TaskRunner& m_tasks;
    QStringList m_paths;
    QSet<QString> m_missing;
};

} // namespace vantro::window::start
