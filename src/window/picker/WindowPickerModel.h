#pragma once

#include "app/flows/MainTimers.h"
#include "app/flows/TaskRunner.h"
#include "capture/ShareableContent.h"

#include <QAbstractListModel>
#include <expected>
#include <functional>
#include <string>

#include <QtQml/qqmlregistration.h>

namespace vantro::window::picker {

/// The windows that may be offered, in their order: on screen, of other applications, not tiny, and
/// with something to call them by.
std::vector<capture::ShareableWindow>
offeredWindows(const std::vector<capture::ShareableWindow>& windows,
               const std::string& ownBundleIdentifier);

/// The list of windows to choose from, asked for on the worker thread and refreshed while it is
/// shown, since windows come and go. A window keeps its row as long as it is there. Main thread.
class WindowPickerModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool loading READ isLoading NOTIFY statusChanged)
    Q_PROPERTY(QString loadError READ loadError NOTIFY statusChanged)
    Q_PROPERTY(int count READ rowCount NOTIFY statusChanged)

  public:
    /// Lists the windows or tells why not. Called on the worker thread.
    using Lister = std::function<std::expected<capture::ShareableContent, std::string>()>;
    enum Role { applicationName = Qt::UserRole, title, bundleIdentifier, iconName };

    WindowPickerModel(app::flows::TaskRunner& tasks, app::flows::MainTimers& timers, Lister lister);

    /// Begins with an empty list; while shown it is kept up to date.
    void setShown(bool shown);
    /// Nothing for a row that is not there.
    std::optional<capture::ShareableWindow> window(int row) const;
    /// The icon that the role `iconName` names; null when no window has it.
    std::shared_ptr<const capture::WindowIcon> icon(const QString& name) const;

    /// True until the first list or failure has come.
    bool isLoading() const { return m_loading; }
    const QString& loadError() const { return m_loadError; }
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    void statusChanged();

  private:
    using Listing = std::expected<capture::ShareableContent, std::string>;

    void refresh();
    void listed(int request, const Listing& listing);
    void setWindows(std::vector<capture::ShareableWindow> windows);
    void dropRow(int row);

    app::flows::TaskRunner& m_tasks;
    app::flows::MainTimers& m_timers;
    Lister m_lister;
    int m_request = 0;
    bool m_asking = false;
    bool m_loading = false;
    QString m_loadError;
    std::vector<capture::ShareableWindow> m_windows;
    std::unique_ptr<app::flows::MainTimer> m_refreshTimer;
};

} // namespace vantro::window::picker
