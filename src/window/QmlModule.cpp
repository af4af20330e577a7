#include "window/QmlModule.h"

#include "base/Fatal.h"
#include "editor/EditorModel.h"
#include "editor/bars/EditorActions.h"
#include "editor/bars/RecordingStrip.h"
#include "editor/bars/RulerPicture.h"
#include "editor/bars/SegmentBarPicture.h"
#include "editor/bars/ZoomBarPicture.h"
#include "editor/sidebar/PicturePreviews.h"
#include "ui/ActionGuard.h"
#include "ui/PreviewItem.h"
#include "ui/SymbolProvider.h"
#include "ui/platform/Appearance.h"
#include "window/DisplayChoice.h"
#include "window/MainModel.h"
#include "window/WindowFitter.h"
#include "window/devices/CameraView.h"
#include "window/devices/DeviceChoice.h"
#include "window/devices/LevelMeters.h"
#include "window/picker/WindowPickerModel.h"
#include "window/settings/KeysModel.h"
#include "window/settings/SettingsModel.h"
#include "window/start/RecentProjectsModel.h"
#include "window/start/UnsavedRecordingsModel.h"

#include <QQmlComponent>
#include <QQuickWindow>
#include <QtPlugin>

Q_IMPORT_PLUGIN(VantroPlugin)

namespace vantro::window {

void prepareEngine(QQmlEngine& engine) {
    qmlRegisterTypesAndRevisions<
        ui::ActionGuard, ui::Appearance, ui::PictureStream, ui::PreviewItem, DisplayChoice,
        MainModel, MessagesModel, WindowFitter, devices::CameraView, devices::DeviceChoice,
        devices::LevelMeters, devices::SourceMeter, editor::EditorModel, editor::EditorPreview,
        editor::PlayerTimeObserver, editor::ZoomTarget, editor::bars::AccessibleBar,
        editor::bars::BarGestures, editor::bars::BarKeys, editor::bars::BarPicture,
        editor::bars::EditorActions, editor::bars::RecordingStrip, editor::bars::RulerPicture,
        editor::bars::SegmentBarPicture, editor::bars::StripModel, editor::bars::TimelineModel,
        editor::bars::ZoomBarPicture, editor::bars::ZoomSuggestions, editor::sidebar::AllZoomsGroup,
        editor::sidebar::BackgroundGroup, editor::sidebar::FrameGroup,
        editor::sidebar::PointerGroup, editor::sidebar::SegmentGroup,
        editor::sidebar::SettingsGroup, editor::sidebar::SidebarModel, editor::sidebar::SoundGroup,
        editor::sidebar::WebcamGroup, editor::sidebar::ZoomGroup, picker::WindowPickerModel,
        settings::KeysModel, settings::SettingsChoice, settings::SettingsModel,
        start::RecentProjectsModel, start::UnsavedRecordingsModel>("Vantro.Native", 1, nullptr);
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.addImageProvider(QStringLiteral("symbol"), new ui::SymbolProvider);
    engine.addImageProvider(QStringLiteral("picture"), new editor::sidebar::PicturePreviews);
}

std::unique_ptr<QQuickWindow> makeWindow(QQmlEngine& engine, const QString& file,
                                         const QVariantMap& properties) {
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/qt/qml/Vantro/") + file));
    base::require(component.isReady(), component.errorString().toStdString());
    std::unique_ptr<QQuickWindow> window(
        qobject_cast<QQuickWindow*>(component.createWithInitialProperties(properties)));
    base::require(window != nullptr, component.errorString().toStdString());
    return window;
}

} // namespace vantro::window
