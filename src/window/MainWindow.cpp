#include "window/MainWindow.h"

#include "base/Fatal.h"
#include "editor/EditorModel.h"
#include "ui/ActionGuard.h"
#include "ui/PictureItem.h"
#include "ui/SymbolProvider.h"
#include "ui/platform/Appearance.h"
#include "window/DisplayChoice.h"
#include "window/MainModel.h"
#include "window/WindowFitter.h"
#include "window/picker/ApplicationIcons.h"
#include "window/picker/WindowPickerModel.h"

#include <QQmlComponent>
#include <QQuickWindow>
#include <QtPlugin>

Q_IMPORT_PLUGIN(VantroPlugin)

namespace vantro::window {

MainWindow::MainWindow(MainWindowModels models) {
    qmlRegisterTypesAndRevisions<ui::ActionGuard, ui::Appearance, ui::PictureItem, DisplayChoice,
                                 MainModel, WindowFitter, editor::EditorModel,
                                 picker::WindowPickerModel>("Vantro.Native", 1, nullptr);
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_engine.addImageProvider(QStringLiteral("symbol"), new ui::SymbolProvider);
    m_engine.addImageProvider(
        QStringLiteral("application"),
        new picker::ApplicationIcons(
            [&windows = models.windows](const QString& name) { return windows.icon(name); }));
    QQmlComponent component(&m_engine, QUrl(QStringLiteral("qrc:/qt/qml/Vantro/Main.qml")));
    base::require(component.isReady(), component.errorString().toStdString());
    const auto object = [](QObject& model) { return QVariant::fromValue(&model); };
    m_window.reset(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(
        {{QStringLiteral("app"), object(models.app)},
         {QStringLiteral("editor"), object(models.editor)},
         {QStringLiteral("windows"), object(models.windows)},
         {QStringLiteral("displays"), object(models.displays)},
         {QStringLiteral("guard"), object(models.guard)},
         {QStringLiteral("appearance"), object(models.appearance)}})));
    base::require(m_window != nullptr, component.errorString().toStdString());
}

MainWindow::~MainWindow() = default;

} // namespace vantro::window
