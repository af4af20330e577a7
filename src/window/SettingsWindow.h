#pragma once

#include "window/settings/KeysModel.h"
#include "window/settings/SettingsModel.h"

#include <QQmlEngine>
#include <memory>

class QQuickWindow;

namespace vantro::ui {
class Appearance;
} // namespace vantro::ui

namespace vantro::window {

/// Where everything is chosen that recordings begin with, the keys from anywhere, the theme and the
/// language. A window of its own, since the main one may be smaller. Main thread.
class SettingsWindow {
  public:
    /// The desktop's own panel for a folder, over the settings where they are shown.
    static void askForFolder(const QString& before, std::function<void(const QString&)> answer);

    /// The others outlive this.
    SettingsWindow(ui::Preferences& preferences, ui::Appearance& appearance, KeysFromAnywhere& keys,
                   settings::SettingsModel::ChooseFolder chooseFolder = askForFolder);
    ~SettingsWindow();

    QQuickWindow& window() { return *m_window; }
    /// Shows it, or brings it to the front.
    void show();

  private:
    settings::SettingsModel m_settings;
    settings::KeysModel m_keys;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
};

} // namespace vantro::window
