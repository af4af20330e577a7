#include "editor/Application.h"

#include "app/RecordingRecovery.h"
#include "app/state/ExportFlow.h"
#include "app/state/PermissionService.h"
#include "app/state/ProjectFlow.h"
#include "app/state/QtMainLoop.h"
#include "app/state/RecoveryFlow.h"
#include "capture/RecordingTarget.h"
#include "editor/MainWindow.h"
#include "editor/models/EditorModel.h"
#include "editor/overlay/DesktopOverlays.h"
#include "editor/platform/Appearance.h"
#include "editor/platform/DesktopServices.h"
#include "editor/platform/NativePanels.h"
#include "editor/platform/OptionsMenu.h"
#include "editor/platform/QuitSignals.h"
#include "editor/platform/StartUp.h"
#include "editor/platform/TrayIcon.h"
#include "editor/platform/WindowPlacement.h"

#include <QApplication>
#include <QIcon>
#include <QQuickWindow>

namespace vantro {
namespace {

constexpr int countdownSeconds = 3;

std::uint32_t mainDisplayID(RecordingPlatform& platform) {
    const auto displays = platform.displays();
    return displays.empty() ? 0 : displays.front().displayID;
}

/// Everything that the program consists of, made in the order in which it depends on each other.
class Program {
  public:
    Program();
    int run();

  private:
    void followPreferences();
    void followRecordings();
    void connectQuitting();

    Preferences m_preferences;
    Appearance m_appearance{m_preferences};
    DesktopRecording m_desktop;
    QtMainTimers m_timers;
    AppState m_state{mainDisplayID(m_desktop)};
    PermissionService m_permission{m_timers, [this] { return m_desktop.preflight(); }};
    NativePanels m_panels{m_state};
    DesktopOverlays m_overlays{m_desktop};

    QtTaskRunner m_recordingTasks{"com.vantro.recording"};
    QtTaskRunner m_exportTasks{"com.vantro.export"};
    QtTaskRunner m_fileTasks{"com.vantro.files"};
    QtTaskRunner m_previewTasks{"com.vantro.preview"};
    QtTaskRunner m_listTasks{"com.vantro.windows"};

    RecordingFlow m_recording{m_state, {m_desktop, m_overlays, m_timers, m_recordingTasks}};
    ExportFlow m_exports{m_state, m_panels, m_exportTasks, runExport};
    ProjectFlow m_projects{m_state, m_panels, m_fileTasks};
    RecoveryFlow m_recovery{m_state, m_fileTasks, recoverRecording};
    const Flows m_flows{m_recording, m_exports, m_projects, m_recovery};

    StillPreview m_preview{m_previewTasks, exportPreview()};
    WindowPickerModel m_windows{m_listTasks, m_timers, listShareableContent};
    MainModel m_model{m_state, m_permission, m_windows, m_flows};
    EditorModel m_editor{m_state, m_preview, m_flows};
    TrayIcon m_tray{m_state, m_recording};
    MainWindow m_window{{m_model, m_editor, m_windows, m_appearance}};
    WindowPlacement m_placement{m_window.window(), m_state, m_preferences};
    QuitSignals m_signals{[this] {
        if (m_state.phase() == AppPhase::recording())
            m_model.stopAndQuit();
        else
            QCoreApplication::quit();
    }};
};

Program::Program() {
    m_state.setMainWindow(&m_window.window());
    followPreferences();
    followRecordings();
    connectQuitting();
    m_recovery.offer(m_preferences.unsavedRecording().toStdString());
}

void Program::followPreferences() {
    const auto countDown = [this] {
        m_recording.setCountdown(m_preferences.countdown() ? countdownSeconds : 0);
    };
    countDown();
    QObject::connect(&m_preferences, &Preferences::countdownChanged, countDown);
    QObject::connect(&m_model, &MainModel::optionsWanted, [this](double x, double y) {
        showOptionsMenu(m_preferences, QPointF(x, y).toPoint(), [this](const QString& path) {
            m_projects.openPackage(path.toStdString());
        });
    });
}

/// Remembers which recording would be lost from sight if the program ended now.
void Program::followRecordings() {
    QObject::connect(&m_state, &AppState::phaseChanged, [this] {
        if (m_state.phase() == AppPhase::previewing() && m_state.recordingURL() &&
            !m_state.projectURL())
            m_preferences.setUnsavedRecording(
                QString::fromStdString(m_state.recordingURL()->string()));
    });
    QObject::connect(&m_recording, &RecordingFlow::begun,
                     [this](const QString& path) { m_preferences.setUnsavedRecording(path); });
    QObject::connect(&m_recording, &RecordingFlow::leftBehind,
                     [this](const QString& path) { m_recovery.offer(path.toStdString()); });
    const auto used = [this](const QString& path) { m_preferences.addRecentProject(path); };
    QObject::connect(&m_projects, &ProjectFlow::saved, used);
    QObject::connect(&m_projects, &ProjectFlow::opened, used);
    QObject::connect(&m_projects, &ProjectFlow::saved,
                     [this] { m_preferences.setUnsavedRecording({}); });
    QObject::connect(&m_recovery, &RecoveryFlow::dismissed,
                     [this] { m_preferences.setUnsavedRecording({}); });
}

void Program::connectQuitting() {
    QObject::connect(&m_window.window(), &QWindow::visibleChanged, [](bool visible) {
        if (!visible)
            QCoreApplication::quit();
    });
    QObject::connect(&m_model, &MainModel::quitReady, qApp, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, [this] {
        m_permission.stopPolling();
        m_placement.remember();
    });
}

int Program::run() {
    m_permission.startPolling();
    m_placement.restore();
    m_window.window().show();
    return QCoreApplication::exec();
}

void nameApplication() {
    // The window class, by which recordings leave our own windows out.
    QCoreApplication::setApplicationName(QString::fromLatin1(ownBundleIdentifier));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Vantro"));
    QGuiApplication::setDesktopFileName(QString::fromLatin1(ownBundleIdentifier));
}

} // namespace

int runApplication(int& argc, char** argv) {
    nameApplication();
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    std::optional<QApplication> application;
    {
        const StartUpGuard guard;
        application.emplace(argc, argv);
    }
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/qt/qml/Vantro/vantro.svg")));
    chooseSceneGraph();
    Program program;
    return program.run();
}

} // namespace vantro
