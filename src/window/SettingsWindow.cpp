#include "window/SettingsWindow.h"

#include "ui/platform/Appearance.h"
#include "window/QmlModule.h"

#include <QFileDialog>
#include <QGuiApplication>
#include <QQuickWindow>

namespace vantro::window {

SettingsWindow::SettingsWindow(ui::Preferences& preferences, ui::Appearance& appearance,
                               KeysFromAnywhere& keys,
                               settings::SettingsModel::ChooseFolder chooseFolder)
    : m_settings(preferences, std::move(chooseFolder)), m_keys(keys) {
    prepareEngine(m_engine);
    m_window = makeWindow(m_engine, QStringLiteral("SettingsWindow.qml"),
                          {{QStringLiteral("settings"), QVariant::fromValue(&m_settings)},
                           {QStringLiteral("keys"), QVariant::fromValue(&m_keys)},
                           {QStringLiteral("appearance"), QVariant::fromValue(&appearance)}});
}

SettingsWindow::~SettingsWindow() = default;

void SettingsWindow::show() {
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
}

void SettingsWindow::askForFolder(const QString& before,
                                  std::function<void(const QString&)> answer) {
    auto* panel =
        new QFileDialog(nullptr, settings::SettingsModel::tr("Folder of Recordings"), before);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::Directory);
    panel->setOption(QFileDialog::ShowDirsOnly);
    panel->setWindowModality(Qt::ApplicationModal);
    QObject::connect(panel, &QFileDialog::fileSelected, std::move(answer));
    panel->winId();
    panel->windowHandle()->setTransientParent(QGuiApplication::focusWindow());
    panel->open();
}

} // namespace vantro::window
