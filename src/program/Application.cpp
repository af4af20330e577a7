#include "program/Application.h"

#include "app/Desktop.h"
#include "app/files/EditJournal.h"
#include "app/flows/ExportFlow.h"
#include "app/flows/Flows.h"
#include "app/flows/JournalFlow.h"
#include "app/flows/PermissionService.h"
#include "app/flows/ProjectFlow.h"
#include "app/flows/QtMainLoop.h"
#include "app/flows/RecoveryFlow.h"
#include "capture/RecordingTarget.h"
#include "capture/camera/CameraWatch.h"
#include "capture/sound/SoundWatch.h"
#include "control/ControlClient.h"
#include "editor/EditorModel.h"
#include "editor/bars/EditorActions.h"
#include "program/DesktopServices.h"
#include "program/OwnPressFilter.h"
#include "program/PictureWithoutUs.h"
#include "program/ProgramControl.h"
#include "program/WindowedApplication.h"
#include "ui/ActionGuard.h"
#include "ui/platform/Appearance.h"
#include "ui/platform/FileManager.h"
#include "ui/platform/NativePanels.h"
#include "window/DisplayChoice.h"
#include "window/MainModel.h"
#include "window/MainWindow.h"
#include "window/SettingsWindow.h"
#include "window/devices/CameraView.h"
#include "window/devices/DeviceChoice.h"
#include "window/devices/LevelMeters.h"
#include "window/overlay/DesktopOverlays.h"
#include "window/platform/DesktopNews.h"
#include "window/platform/DeviceMenu.h"
#include "window/platform/HiddenWindows.h"
#include "window/platform/IdleInhibitor.h"
#include "window/platform/KeysFromAnywhere.h"
#include "window/platform/Notifications.h"
#include "window/platform/OptionsMenu.h"
#include "window/platform/QuitSignals.h"
#include "window/platform/StopNotice.h"
#include "window/platform/TrayIcon.h"
#include "window/platform/WindowPlacement.h"
#include "window/start/RecentProjectsModel.h"
#include "window/start/UnsavedRecordingsModel.h"

#include <QApplication>
#include <QQuickWindow>
#include <QSystemTrayIcon>
#include <QTimer>
#include <chrono>
#include <optional>

namespace vantro::program {
namespace {

/// The bus starts the program because somebody calls it; if nobody does, it goes.
constexpr std::chrono::seconds longestUnasked(20);

std::uint32_t mainDisplayID(app::flows::RecordingPlatform& platform) {
    const auto displays = platform.displays();
    return displays.empty() ? 0 : displays.front().displayID;
}

template <typename Device>
std::vector<window::devices::AttachedDevice> attached(const std::vector<Device>& devices) {
    std::vector<window::devices::AttachedDevice> result;
    result.reserve(devices.size());
    for (const auto& device : devices)
        result.push_back({.name = QString::fromStdString(device.name),
                          .description = QString::fromStdString(device.description),
                          .isDefault = device.isDefault});
    return result;
}

/// Everything that the program consists of, made in the order in which it depends on each other.
class Program {
  public:
    Program();
    int run(const StartRequest& request);

  private:
    capture::PlatformAbilities abilities();
    void followPreferences();
    void connectQuitting();
    void soundChanged();
    void camerasChanged();

    ui::Preferences m_preferences;
    ui::Appearance m_appearance{m_preferences};
    DesktopRecording m_desktop;
    app::flows::QtMainTimers m_timers;
    app::AppState m_state{mainDisplayID(m_desktop)};
    app::flows::PermissionService m_permission{m_timers, [this] { return m_desktop.preflight(); }};
    ui::NativePanels m_panels{m_state, m_preferences};
    ui::FileManager m_fileManager{QDBusConnection::sessionBus()};
    window::overlay::DesktopOverlays m_overlays{m_desktop, pictureWithoutUs, m_preferences};

    app::flows::QtTaskRunner m_recordingTasks{"com.vantro.recording"};
    app::flows::QtTaskRunner m_exportTasks{"com.vantro.export"};
    app::flows::QtTaskRunner m_fileTasks{"com.vantro.files"};
    app::flows::QtTaskRunner m_previewTasks{"com.vantro.preview"};
    app::flows::QtTaskRunner m_editorTasks{"com.vantro.editor"};
    app::flows::QtTaskRunner m_listTasks{"com.vantro.windows"};
    app::flows::QtTaskRunner m_shelfTasks{"com.vantro.shelf"};
    app::flows::QtTaskRunner m_journalTasks{"com.vantro.journal"};

    app::flows::RecordingFlow m_recording{m_state,
                                          {m_desktop, m_overlays, m_timers, m_recordingTasks}};
    app::flows::ExportFlow m_exports{m_state, m_panels, m_exportTasks, runExport};
    app::flows::ProjectFlow m_projects{m_state, m_panels, m_fileTasks};
    app::flows::RecoveryFlow m_recovery{m_state, m_projects, m_shelfTasks};
    app::flows::JournalFlow m_journals{m_state, m_projects, m_timers, m_journalTasks,
                                       app::files::editJournals()};
    const app::flows::Flows m_flows{m_recording, m_exports, m_projects, m_recovery, m_journals};

    editor::EditorPreview m_preview{
        m_previewTasks, openMovieForEditor, makeSound, {media::proxy::usualProxyFolder()}};
    window::picker::WindowPickerModel m_windows{m_listTasks, m_timers, listShareableContent};
    window::DisplayChoice m_displays{m_state, [this] { return m_desktop.displays(); }};
    ui::ActionGuard m_guard{m_state, m_permission, m_flows, [this] { return abilities(); }};
    window::devices::DeviceChoice m_microphones{m_state, m_preferences, ui::DeviceUse::microphone};
    window::devices::DeviceChoice m_cameras{m_state, m_preferences, ui::DeviceUse::camera};
    capture::sound::SoundWatch m_soundWatch{[this] {
        QMetaObject::invokeMethod(&m_guard, [this] { soundChanged(); }, Qt::QueuedConnection);
    }};
    capture::camera::CameraWatch m_cameraWatch{[this] {
        QMetaObject::invokeMethod(&m_guard, [this] { camerasChanged(); }, Qt::QueuedConnection);
    }};
    const std::unique_ptr<capture::SoundDevices> m_sound = app::desktopSound();
    window::devices::CameraView m_camera{
        m_guard, m_state, m_recordingTasks,
        [](const std::string& device) { return app::desktopCameras()->open(device); }};
    window::MainModel m_model{m_state, m_permission, m_windows, m_flows, m_guard};
    window::devices::LevelMeters m_meters{
        m_guard, m_state, m_timers,
        [this](auto kind, const auto& device) { return m_sound->meter(kind, device); }};
    editor::EditorModel m_editor{
        m_state,
        m_preview,
        m_flows,
        {.panels = m_panels,
         .tasks = m_editorTasks,
         .openMovie = openMovieForEditor,
         .showInFolder = [this](const QString& file) { m_fileManager.show(file); }}};
    editor::bars::EditorActions m_actions{m_state, *m_preview.transport()};
    OwnPressFilter m_ownPresses;
    ProgramControl m_control{m_state, m_flows, m_recordingTasks};
    window::TrayIcon m_tray{m_state, m_recording, [this] { m_control.show({}, {}); }};
    window::KeysFromAnywhere m_keys{m_preferences,
                                    {app::bindGlobalKeys, app::isWaylandSession()},
                                    [this](auto action) { m_control.act(action); }};
    window::StopNotice m_stopNotice{m_state, m_recording, QDBusConnection::sessionBus(),
                                    QSystemTrayIcon::isSystemTrayAvailable};
    window::Notifications m_notifications{QDBusConnection::sessionBus()};
    window::DesktopNews m_news{
        m_flows,
        m_notifications,
        {.isLookedAt = [] { return QGuiApplication::applicationState() == Qt::ApplicationActive; },
         .showInFolder = [this](const QString& file) { m_fileManager.show(file); }}};
    window::IdleInhibitor m_idle{m_state, QDBusConnection::sessionBus()};
    window::start::UnsavedRecordingsModel m_recordings{m_recovery};
    window::start::RecentProjectsModel m_recents{m_preferences, m_projects, m_shelfTasks};
    window::MainWindow m_window{{m_model, m_editor, m_actions, m_windows, m_displays, m_guard,
                                 m_appearance, m_recordings, m_recents, m_meters, m_microphones,
                                 m_cameras, m_camera, m_recovery, m_recording}};
    std::optional<window::SettingsWindow> m_settings; ///< made when first wanted
    window::HiddenWindows m_hiddenWindows{m_recording};
    window::WindowPlacement m_placement{m_window.window(), m_state, m_preferences};
    window::QuitSignals m_signals{[this] {
        if (m_state.phase() == app::AppPhase::recording())
            m_model.stopAndQuit();
        else
            QCoreApplication::quit();
    }};
};

Program::Program() {
    m_state.setMainWindow(&m_window.window());
    followPreferences();
    connectQuitting();
    for (auto* choice : {&m_microphones, &m_cameras})
        QObject::connect(choice, &window::devices::DeviceChoice::menuWanted,
                         [choice](QPoint place) { window::showDeviceMenu(*choice, place); });
    const auto tellMarkKey = [this] { m_model.setMarkKey(m_keys.markKey()); };
    QObject::connect(&m_keys, &window::KeysFromAnywhere::changed, tellMarkKey);
    tellMarkKey();
    QObject::connect(&m_recording, &app::flows::RecordingFlow::leftBehind,
                     [this](const QString& path) { m_recovery.offer(path.toStdString()); });
    m_recovery.find();
    m_journals.find();
}

/// Whose windows are hidden needs another way to stop.
capture::PlatformAbilities Program::abilities() {
    auto able = m_desktop.abilities();
    const bool hasButton = QSystemTrayIcon::isSystemTrayAvailable() ||
                           window::StopNotice::isPossible(QDBusConnection::sessionBus());
    if (!able.ownWindowsLeftOut.isAvailable() && !hasButton)
        able.ownWindowsLeftOut.whyNot +=
            " Stop with your desktop's own button, or a key for `vantro stop`.";
    return able;
}

void Program::soundChanged() {
    if (const auto devices = m_soundWatch.devices()) {
        m_desktop.setSound(capture::abilitiesOf(*devices));
        m_guard.askAgain();
        auto microphones = devices->value_or(std::vector<capture::SoundDevice>());
        std::erase_if(microphones, [](const capture::SoundDevice& device) {
            return device.kind != capture::SoundKind::microphone;
        });
        m_microphones.setDevices(attached(microphones));
    }
}

void Program::camerasChanged() {
    if (const auto cameras = m_cameraWatch.cameras()) {
        m_desktop.setCamera(capture::abilityOf(*cameras));
        m_guard.askAgain();
        m_cameras.setDevices(attached(cameras->value_or(std::vector<capture::CameraDevice>())));
    }
}

void Program::followPreferences() {
    const auto useDefaults = [this] {
        auto& preparation = m_recording.preparation();
        preparation.setCountdown(m_preferences.countdown());
        preparation.setFrameRate(m_preferences.frameRate());
        std::optional<std::filesystem::path> folder;
        if (const auto chosen = m_preferences.recordingsFolder(); !chosen.isEmpty())
            folder = chosen.toStdString();
        preparation.setFolder(std::move(folder));
        m_state.setLook(m_preferences.look());
    };
    useDefaults();
    QObject::connect(&m_preferences, &ui::Preferences::recordingDefaultsChanged, useDefaults);
    QObject::connect(m_editor.sidebar()->frame(), &editor::sidebar::FrameGroup::lookChosen,
                     [this](const auto& look) { m_preferences.setLook(look); });
    const auto showSettings = [this] {
        if (!m_settings)
            m_settings.emplace(m_preferences, m_appearance, m_keys);
        m_settings->show();
    };
    QObject::connect(&m_model, &window::MainModel::settingsWanted, showSettings);
    QObject::connect(&m_model, &window::MainModel::optionsWanted, [=, this](double x, double y) {
        window::showOptionsMenu(
            QPointF(x, y).toPoint(), [this] { m_projects.importMovie(); }, showSettings);
    });
}

void Program::connectQuitting() {
    QObject::connect(&m_model, &window::MainModel::quitReady, qApp, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, [this] {
        m_permission.stopPolling();
        m_placement.remember();
        m_preview.show({}); // its threads end while others are waited for
    });
}

int Program::run(const StartRequest& request) {
    m_permission.startPolling();
    if (!request.file.empty())
        m_projects.open(request.file);
    m_placement.restore();
    if (request.isService)
        QTimer::singleShot(longestUnasked, qApp, [this] {
            if (!m_window.window().isVisible() && m_state.phase() == app::AppPhase::idle() &&
                !m_recording.preparation().isUnderWay())
                QCoreApplication::quit();
        });
    else
        m_window.window().show();
    if (!request.action.empty())
        m_control.act(request.action);
    return QCoreApplication::exec();
}

} // namespace

int runApplication(int& argc, char** argv, const StartRequest& request) {
    // There is one window: a second start shows it.
    if (request.action.empty() ? !request.isService && control::handOver(request.files())
                               : control::handOverAction(request.action))
        return 0;
    const auto application = makeWindowedApplication(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Program program;
    return program.run(request);
}

} // namespace vantro::program
