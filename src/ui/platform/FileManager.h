#pragma once

#include <QDBusConnection>
#include <QObject>
#include <functional>

namespace vantro::ui {

/// The desktop's file manager. Main thread.
class FileManager : public QObject {
    Q_OBJECT

  public:
    using OpenFolder = std::function<void(const QString& folder)>;

    /// `openFolder` does what it can where no file manager answers.
    explicit FileManager(QDBusConnection bus, OpenFolder openFolder = withXdgOpen);

    /// Opens the file's folder, with the file selected where the desktop can.
    void show(const QString& file);

    static void withXdgOpen(const QString& folder);

  private:
    QDBusConnection m_bus;
    OpenFolder m_openFolder;
};

} // namespace vantro::ui
