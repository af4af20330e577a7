#pragma once

#include "app/flows/ExportFlow.h"
#include "app/flows/Flows.h"
#include "app/flows/JournalFlow.h"
#include "app/flows/PermissionService.h"
#include "app/flows/ProjectFlow.h"
#include "app/flows/QtMainLoop.h"
#include "app/flows/RecoveryFlow.h"
#include "app/flows/ScriptedServices.h"
#include "editor/EditorModel.h"
#include "editor/bars/EditorActions.h"
#include "export/RecordingFixture.h"
#include "support/Environment.h"
#include "ui/ActionGuard.h"
#include "ui/Preferences.h"
#include "ui/platform/Appearance.h"
#include "window/DisplayChoice.h"
#include "window/MainModel.h"
#include "window/MainWindow.h"
#include "window/devices/CameraView.h"
#include "window/devices/DeviceChoice.h"
#include "window/devices/LevelMeters.h"
#include "window/picker/WindowPickerModel.h"
#include "window/start/RecentProjectsModel.h"
#include "window/start/UnsavedRecordingsModel.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>
#include <map>

#include <gtest/gtest.h>

namespace vantro::test {

/// Writes NAME.png into the folder for people to look at: VANTRO_PICTURES where that is set, else
/// one in the build's.
void keepPicture(const QImage& picture, const QString& name);

Rgb rgbOf(const QColor& color);

/// Window, models and flows of the program over surroundings that do what a test tells them to.
class WindowFixture : public testing::Test {
  protected:
    WindowFixture();

    /// Shows the main window, which the models then fill.
    void showWindow();
    /// The one that items, pointer, keys and pictures are meant for.
    virtual QQuickWindow& window() { return m_window->window(); }
    /// The item of that object name, which must be there.
    QQuickItem& item(const char* name);
    /// Whether such an item is there and visible.
    bool shows(const char* name);
    /// The text of such an item.
    QString text(const char* name);
    /// Presses and releases the left button in the middle of an item.
    void click(const char* name);
    /// The color that is shown at a place of an item, in parts of its width and height.
    QColor colorAt(QQuickItem& shown, double x = 0.5, double y = 0.5);
    /// Drops files on the window, as a file manager does. Whether they were taken.
    bool drop(QPoint place, const std::vector<std::filesystem::path>& dropped);
    bool isFrameShown = false; ///< while something was held over the window
    /// A color of the theme that is shown now.
    QColor themeColor(const char* name);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void settle();
    /// Lets everything that waits be done.
    void runTasks();

    void record(model::CaptureMode mode = model::CaptureMode::screen);
    /// Puts a finished recording into the editor: four seconds, each of its own color.
    void showEditor(const model::Edit& edit = {}, const model::RecordingMetadata& metadata = {});
    /// Waits for the preview to show this color in its middle.
    bool stageBecomes(Rgb color);
    /// Keeps what the window shows.
    void keepPicture(const QString& name);

    bool granted = true;
    std::expected<capture::ShareableContent, std::string> content;
    /// Why the preview cannot open the recording; empty: it can.
    std::string previewProblem;
    std::function<void(const std::function<void(double)>&)> exportScript = [](const auto&) {};
    std::vector<app::flows::ExportJob> exports;
    QString shownInFolder; ///< the last file that the file manager was asked for
    base::HostTime now;    ///< while something is exported

    ManualTimers timers;
    ManualTasks tasks;
    ScriptedPlatform platform;
    ScriptedOverlays overlays;
    ScriptedPanels panels;
    QTemporaryDir files;
    ui::Preferences preferences{files.filePath(QStringLiteral("vantro.ini"))};
    ui::Appearance appearance{preferences};
    app::AppState state{7};
    app::flows::PermissionService permission{timers, [this] { return granted; }};
    std::optional<app::files::DiskUse> disk; ///< of recordings
    app::flows::RecordingFlow recording{
        state, {platform, overlays, timers, tasks, [this](const auto&) { return disk; }}};
    app::flows::ExportFlow exporting{
        state, panels, tasks,
        [this](const app::flows::ExportJob& job, const auto& progress, const auto&) {
            exports.push_back(job);
            exportScript(progress);
        }};
    app::flows::ProjectFlow projects{state, panels, tasks};
    app::flows::RecoveryFlow recovery{state, projects, tasks};
    app::flows::JournalFlow journals{state, projects, timers, tasks,
                                     files.filePath(QStringLiteral("edits")).toStdString()};
    app::flows::Flows flows{recording, exporting, projects, recovery, journals};
    app::flows::QtTaskRunner previewTasks{"preview"};
    editor::EditorPreview preview{
        previewTasks,
        [this](const auto& shown, const auto& edit) { return openMovie(shown, edit); },
        [](const auto&) { return nullptr; }};
    window::picker::WindowPickerModel windows{tasks, timers, [this] { return content; }};
    window::DisplayChoice displays{state, [this] { return platform.displays(); }};
    ui::ActionGuard guard{state, permission, flows, [this] { return platform.abilities(); }};
    window::MainModel app{state, permission, windows, flows, guard};
    editor::EditorModel editor{
        state,
        preview,
        flows,
        {.panels = panels,
         .tasks = tasks,
         .openMovie = [this](const auto& shown,
                             const auto& edit) { return openMovie(shown, edit); },
         .showInFolder = [this](const QString& file) { shownInFolder = file; },
         .now = [this] { return now; }}};
    editor::bars::EditorActions actions{state, *preview.transport(), false};
    window::start::UnsavedRecordingsModel recordings{recovery};
    window::start::RecentProjectsModel recents{preferences, projects, tasks};
    window::devices::DeviceChoice microphones{state, preferences, ui::DeviceUse::microphone};
    window::devices::DeviceChoice cameras{state, preferences, ui::DeviceUse::camera};
    std::function<window::devices::CameraFeed::Camera(const std::string&)> openCamera =
        [](const auto&) {
            return std::unexpected(capture::CameraRefusal{.reason = "there is none"});
        };
    window::devices::CameraView camera{guard, state, tasks,
                                       [this](const auto& device) { return openCamera(device); }};
    /// What the meters under way read, by what they meter.
    std::map<capture::SoundKind, std::optional<capture::SoundMeter::Reading>> readings;
    std::vector<std::string> metered; ///< the meters under way: "system", "microphone DEVICE"
    window::devices::LevelMeters meters{
        guard, state, timers,
        [this](auto kind, const auto& device) { return makeMeter(kind, device); }};

  private:
    class Meter;

    std::unique_ptr<capture::SoundMeter> makeMeter(capture::SoundKind kind,
                                                   const std::string& device);
    std::unique_ptr<render::MovieSession> openMovie(const model::Recording& shown,
                                                    const model::Edit& edit) const;

    std::unique_ptr<window::MainWindow> m_window;
};

} // namespace vantro::test
