#pragma once

#include <QQmlEngine>
#include <memory>

class QQuickWindow;

namespace vantro {

class Appearance;
class EditorModel;
class MainModel;
class WindowPickerModel;

/// What the main window shows; all of it outlives the window.
struct MainWindowModels {
    MainModel& app;
    EditorModel& editor;
    WindowPickerModel& windows;
    QObject& appearance; ///< with the property `dark`
};

/// The program's only window, loaded from the QML module but not shown yet. Main thread.
class MainWindow {
  public:
    explicit MainWindow(MainWindowModels models);
    ~MainWindow();

    QQuickWindow& window() { return *m_window; }

  private:
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
};

} // namespace vantro
