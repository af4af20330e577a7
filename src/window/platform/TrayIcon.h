#pragma once

#include <memory>

class QAction;
class QMenu;
class QSystemTrayIcon;

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::app::flows {
class RecordingFlow;
} // namespace vantro::app::flows

namespace vantro::window {

/// An icon in the desktop's tray while a recording is under way, with Stop and Pause, that shows
/// whether it is paused; where there is no tray, nothing. Main thread.
class TrayIcon {
  public:
    TrayIcon(app::AppState& state, app::flows::RecordingFlow& flow);
    ~TrayIcon();

  private:
    void update();
    void make();

    app::AppState& m_state;
    app::flows::RecordingFlow& m_flow;
    std::unique_ptr<QMenu> m_menu;
    QAction* m_pause = nullptr; ///< the menu's
    std::unique_ptr<QSystemTrayIcon> m_icon;
};

} // namespace vantro::window
