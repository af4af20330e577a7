#pragma once

#include <memory>

class QSystemTrayIcon;
class QMenu;

namespace vantro {

class AppState;
class RecordingFlow;

/// An icon in the desktop's tray while a recording runs, with Stop; where there is no tray,
/// nothing. Main thread.
class TrayIcon {
  public:
    TrayIcon(AppState& state, RecordingFlow& flow);
    ~TrayIcon();

  private:
    void update();

    AppState& m_state;
    RecordingFlow& m_flow;
    std::unique_ptr<QMenu> m_menu;
    std::unique_ptr<QSystemTrayIcon> m_icon;
};

} // namespace vantro
