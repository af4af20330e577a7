#include "editor/MainWindow.h"

#include "base/Fatal.h"
#include "editor/PictureItem.h"
#include "editor/SymbolProvider.h"
#include "editor/WindowFitter.h"
#include "editor/models/EditorModel.h"
#include "editor/picker/ApplicationIcons.h"
#include "editor/picker/WindowPickerModel.h"

#include <QQmlComponent>
#include <QQuickWindow>
#include <QtPlugin>

Q_IMPORT_PLUGIN(VantroPlugin)

namespace vantro {

MainWindow::MainWindow(MainWindowModels models) {
    qmlRegisterType<PictureItem>("Vantro.Native", 1, 0, "PictureItem");
    qmlRegisterType<WindowFitter>("Vantro.Native", 1, 0, "WindowFitter");
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_engine.addImageProvider(QStringLiteral("symbol"), new SymbolProvider);
    m_engine.addImageProvider(
        QStringLiteral("application"),
        new ApplicationIcons(
            [&windows = models.windows](const QString& name) { return windows.icon(name); }));
    QQmlComponent component(&m_engine, QUrl(QStringLiteral("qrc:/qt/qml/Vantro/Main.qml")));
    const auto object = [](QObject& model) { return QVariant::fromValue(&model); };
    m_window.reset(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(
        {{QStringLiteral("app"), object(models.app)},
         {QStringLiteral("editor"), object(models.editor)},
         {QStringLiteral("windows"), object(models.windows)},
         {QStringLiteral("appearance"), object(models.appearance)}})));
    require(m_window != nullptr, component.errorString().toStdString());
}

MainWindow::~MainWindow() = default;

} // namespace vantro
