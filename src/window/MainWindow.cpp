#include "window/MainWindow.h"

#include "editor/EditorModel.h"
#include "editor/bars/EditorActions.h"
#include "ui/ActionGuard.h"
#include "ui/platform/Appearance.h"
#include "window/ChosenPictures.h"
#include "window/DisplayChoice.h"
#include "window/MainModel.h"
#include "window/QmlModule.h"
#include "window/devices/CameraView.h"
#include "window/devices/DeviceChoice.h"
#include "window/devices/LevelMeters.h"
#include "window/picker/ApplicationIcons.h"
#include "window/picker/WindowPickerModel.h"
#include "window/start/RecentProjectsModel.h"
#include "window/start/RecordingPictures.h"
#include "window/start/UnsavedRecordingsModel.h"

#include <QQuickWindow>

namespace vantro::window {

MainWindow::MainWindow(MainWindowModels models) {
    prepareEngine(m_engine);
    m_engine.addImageProvider(
        QStringLiteral("application"),
        new picker::ApplicationIcons(
            [&windows = models.windows](const QString& name) { return windows.icon(name); }));
    m_engine.addImageProvider(QStringLiteral("recording"),
                              new start::RecordingPictures(models.recovery));
    m_engine.addImageProvider(QStringLiteral("chosen"), new ChosenPictures(models.recording));
    const auto object = [](QObject& model) { return QVariant::fromValue(&model); };
    m_window = makeWindow(m_engine, QStringLiteral("Main.qml"),
                          {{QStringLiteral("app"), object(models.app)},
                           {QStringLiteral("editor"), object(models.editor)},
                           {QStringLiteral("actions"), object(models.actions)},
                           {QStringLiteral("windows"), object(models.windows)},
                           {QStringLiteral("displays"), object(models.displays)},
                           {QStringLiteral("guard"), object(models.guard)},
                           {QStringLiteral("recordings"), object(models.recordings)},
                           {QStringLiteral("recents"), object(models.recents)},
                           {QStringLiteral("meters"), object(models.meters)},
                           {QStringLiteral("microphones"), object(models.microphones)},
                           {QStringLiteral("cameras"), object(models.cameras)},
                           {QStringLiteral("camera"), object(models.camera)},
                           {QStringLiteral("appearance"), object(models.appearance)}});
}

MainWindow::~MainWindow() = default;

} // namespace vantro::window
