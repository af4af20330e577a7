#pragma once

#include <functional>
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

/// An icon in the desktop's tray: red with the elapsed time and Stop while a recording runs, else
/// gray, with how far an export is. Where there is no tray, nothing. Main thread.
class TrayIcon {
  public:
    /// The others outlive this.
    TrayIcon(app::AppState& state, app::flows::RecordingFlow& flow,
             std::function<void()> showWindow);
    ~TrayIcon();

  private:
    void make();
    void update();

    app::AppState& m_state;
    app::flows::RecordingFlow& m_flow;
    const std::function<void()> m_showWindow;
    std::unique_ptr<QMenu> m_menu;
    QAction* m_stop = nullptr; ///< in the menu
    std::unique_ptr<QSystemTrayIcon> m_icon;
    bool m_isRed = false;
};

} // namespace vantro::window
