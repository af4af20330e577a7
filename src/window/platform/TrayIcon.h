#pragma once

#include <memory>

class QSystemTrayIcon;
class QMenu;

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::app::flows {
class RecordingFlow;
} // namespace vantro::app::flows

namespace vantro::window {

/// An icon in the desktop's tray while a recording runs, with Stop; where there is no tray,
/// nothing. Main thread.
class TrayIcon {
  public:
    TrayIcon(app::AppState& state, app::flows::RecordingFlow& flow);
    ~TrayIcon();

  private:
    void update();

    app::AppState& m_state;
    app::flows::RecordingFlow& m_flow;
    std::unique_ptr<QMenu> m_menu;
    std::unique_ptr<QSystemTrayIcon> m_icon;
};

} // namespace vantro::window
