#pragma once

#include "capture/PointerSource.h"
#include "capture/x11/X11OwnWindows.h"
#include "capture/x11/X11WakeUp.h"
#include "capture/x11/X11WindowTree.h"

#include <deque>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace vantro::capture::x11 {

/// Whether an event of XInput is a press of the button.
bool isPressOf(MouseButton button, const xcb_generic_event_t& event, std::uint8_t opcode);

/// Watches one button through XInput raw presses, which come whatever window or client has the
/// pointer. A touch counts as a press of the left button; a pen presses buttons itself. Presses
/// over own windows are left out, also where the press itself closes the window, as it does a menu.
/// Has a connection and a thread of its own, which ends with the server.
class X11ClickMonitor final : public ClickMonitor {
  public:
    /// Null when the display or the extension is missing.
    static std::unique_ptr<ClickMonitor> create(const std::string& display, MouseButton button,
                                                IsOwnProcess isOwnProcess,
                                                std::function<void()> handler);
    X11ClickMonitor(X11Connection connection, MouseButton button, IsOwnProcess isOwnProcess,
                    std::function<void()> handler);
    ~X11ClickMonitor() override;

  private:
    void run(const std::stop_token& stop);
    XcbEvent nextEvent();
    void followOwnWindows(const xcb_generic_event_t& event);
    void addIfOwn(const X11Placement& placement);
    bool isOverOwnWindow();
    bool isClosing(xcb_window_t window);

    X11Connection m_connection;
    MouseButton m_button;
    X11OwnWindows m_own;
    std::vector<X11Placement> m_ownWindows; // shown, as of the last event that was handled
    std::deque<XcbEvent> m_pending;         // received, not yet handled
    std::function<void()> m_handler;
    X11WakeUp m_wakeUp;
    std::jthread m_thread;
};

} // namespace vantro::capture::x11
