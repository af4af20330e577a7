#pragma once

#include <QQmlEngine>
#include <memory>

class QQuickWindow;

namespace vantro::editor {
class EditorModel;
} // namespace vantro::editor

namespace vantro::editor::bars {
class EditorActions;
} // namespace vantro::editor::bars

namespace vantro::ui {
class ActionGuard;
class Appearance;
} // namespace vantro::ui

namespace vantro::window::picker {
class WindowPickerModel;
} // namespace vantro::window::picker

namespace vantro::app::flows {
class RecordingFlow;
class RecoveryFlow;
} // namespace vantro::app::flows

namespace vantro::window::start {
class RecentProjectsModel;
class UnsavedRecordingsModel;
} // namespace vantro::window::start

namespace vantro::window::devices {
class CameraView;
class DeviceChoice;
class LevelMeters;
} // namespace vantro::window::devices

namespace vantro::window {

class DisplayChoice;
class MainModel;

/// What the main window shows; all of it outlives the window.
struct MainWindowModels {
    MainModel& app;
    editor::EditorModel& editor;
    editor::bars::EditorActions& actions;
    picker::WindowPickerModel& windows;
    DisplayChoice& displays;
    ui::ActionGuard& guard;
    ui::Appearance& appearance;
    start::UnsavedRecordingsModel& recordings;
    start::RecentProjectsModel& recents;
    devices::LevelMeters& meters;
    devices::DeviceChoice& microphones;
    devices::DeviceChoice& cameras;
    devices::CameraView& camera;
    const app::flows::RecoveryFlow& recovery;
    const app::flows::RecordingFlow& recording;
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

} // namespace vantro::window
