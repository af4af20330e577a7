#pragma once

#include "app/RecordingRecovery.h"
#include "app/state/ExportFlow.h"
#include "app/state/PermissionService.h"
#include "app/state/ProjectFlow.h"
#include "app/state/RecoveryFlow.h"
#include "app/state/ScriptedServices.h"
#include "editor/MainWindow.h"
#include "editor/models/EditorModel.h"
#include "editor/picker/WindowPickerModel.h"

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

    void record(CaptureMode mode = CaptureMode::screen);
    /// Puts a finished recording into the editor.
    void showEditor();
    /// Writes what the window shows to NAME.png in the folder for people to look at.
    void keepPicture(const QString& name);

    bool granted = true;
    std::expected<ShareableContent, std::string> content;
    /// What the preview shows: a picture of this colour, or a failure.
    double previewDuration = 20;
    std::string previewProblem;
    std::vector<double> drawnPositions;
    std::function<void(const std::function<void(double)>&)> exportScript = [](const auto&) {};
    std::vector<ExportJob> exports;

    ManualTimers timers;
    ManualTasks tasks;
    ScriptedPlatform platform;
    ScriptedOverlays overlays;
    ScriptedPanels panels;
    ScriptedAppearance appearance;
    AppState state{7};
    PermissionService permission{timers, [this] { return granted; }};
    RecordingFlow recording{state, {platform, overlays, timers, tasks}};
    ExportFlow exporting{state, panels, tasks,
                         [this](const ExportJob& job, const auto& progress, const auto&) {
                             exports.push_back(job);
                             exportScript(progress);
                         }};
    ProjectFlow projects{state, panels, tasks};
    RecoveryFlow recovery{state, tasks, recoverRecording};
    Flows flows{recording, exporting, projects, recovery};
    StillPreview preview{tasks, previewSource()};
    WindowPickerModel windows{tasks, timers, [this] { return content; }};
    MainModel app{state, permission, windows, flows};
    EditorModel editor{state, preview, flows};

  private:
    PreviewSource previewSource();

    std::unique_ptr<MainWindow> m_window;
};

} // namespace vantro::test
