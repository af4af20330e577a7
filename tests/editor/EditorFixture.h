#pragma once

#include "app/files/RecordingRecovery.h"
#include "app/flows/ExportFlow.h"
#include "app/flows/PermissionService.h"
#include "app/flows/ProjectFlow.h"
#include "app/flows/RecoveryFlow.h"
#include "app/flows/ScriptedServices.h"
#include "editor/EditorModel.h"
#include "window/MainWindow.h"
#include "window/picker/WindowPickerModel.h"

#include <QQmlPropertyMap>

#include <gtest/gtest.h>

class QQuickItem;
class QQuickWindow;

namespace vantro::test {

/// The theme as the window sees it.
class ScriptedAppearance : public QQmlPropertyMap {
  public:
    ScriptedAppearance() { setDark(false); }
    void setDark(bool dark) { insert(QStringLiteral("dark"), dark); }
};

/// Window, models and flows of the program over surroundings that do what a test tells them to.
class EditorFixture : public testing::Test {
  protected:
    EditorFixture();

    /// Shows the main window, which the models then fill.
    void showWindow();
    QQuickWindow& window() { return m_window->window(); }
    /// The item of that object name, which must be there.
    QQuickItem& item(const char* name);
    /// Whether such an item is there and visible.
    bool shows(const char* name);
    /// The text of such an item.
    QString text(const char* name);
    /// Presses and releases the left button in the middle of an item.
    void click(const char* name);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void settle();
    /// Lets everything that waits be done.
    void runTasks();

    void record(model::CaptureMode mode = model::CaptureMode::screen);
    /// Puts a finished recording into the editor.
    void showEditor();
    /// Writes what the window shows to NAME.png in the folder for people to look at.
    void keepPicture(const QString& name);

    bool granted = true;
    std::expected<capture::ShareableContent, std::string> content;
    /// What the preview shows: a picture of this colour, or a failure.
    double previewDuration = 20;
    std::string previewProblem;
    std::vector<double> drawnPositions;
    std::function<void(const std::function<void(double)>&)> exportScript = [](const auto&) {};
    std::vector<app::flows::ExportJob> exports;

    ManualTimers timers;
    ManualTasks tasks;
    ScriptedPlatform platform;
    ScriptedOverlays overlays;
    ScriptedPanels panels;
    ScriptedAppearance appearance;
    app::AppState state{7};
    app::flows::PermissionService permission{timers, [this] { return granted; }};
    app::flows::RecordingFlow recording{state, {platform, overlays, timers, tasks}};
    app::flows::ExportFlow exporting{
        state, panels, tasks,
        [this](const app::flows::ExportJob& job, const auto& progress, const auto&) {
            exports.push_back(job);
            exportScript(progress);
        }};
    app::flows::ProjectFlow projects{state, panels, tasks};
    app::flows::RecoveryFlow recovery{state, tasks, app::files::recoverRecording};
    window::Flows flows{recording, exporting, projects, recovery};
    editor::StillPreview preview{tasks, openStills()};
    window::picker::WindowPickerModel windows{tasks, timers, [this] { return content; }};
    window::MainModel app{state, permission, windows, flows};
    editor::EditorModel editor{state, preview, flows};

  private:
    editor::OpenStills openStills();

    std::unique_ptr<window::MainWindow> m_window;
};

} // namespace vantro::test
