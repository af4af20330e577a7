#pragma once

#include "capture/PointerSource.h"
#include "capture/x11/windows/X11OwnWindows.h"
#include "capture/x11/windows/X11WindowTree.h"

#include <deque>
#include <optional>
#include <vector>

namespace vantro::capture::x11 {

/// Recognizes presses of the left and right button in a connection's events, through XInput's raw
/// presses, which come whatever window or client has the pointer. Buttons are what the user has
/// made of them; a touch counts as the left one; a pen presses buttons itself. Presses over own
/// windows are left out, also where the press itself closes the window, as it does a menu. Outlived
/// by the connection; same thread.
class X11Presses {
  public:
    struct Press {
        MouseButton button;
        base::HostTime time;
    };

    /// Presses count from now on.
    X11Presses(const X11Connection& connection, IsOwnProcess isOwnProcess);

    /// False where the server cannot tell of presses.
    bool isWatching() const { return m_opcode != 0; }
    /// Whether each motion of the pointer is an event, too, which `handle` takes no note of. A
    /// mouse moves up to a thousand times a second.
    void watchMotion(bool isWatched) const;
    /// The connection's next event that has come, in order; it is to be handled here, too.
    XcbEvent nextEvent();
    std::optional<Press> handle(const xcb_generic_event_t& event);

  private:
    std::optional<MouseButton> buttonOf(const xcb_generic_event_t& event) const;
    void followOwnWindows(const xcb_generic_event_t& event);
    void addIfOwn(const X11Placement& placement);
    bool isOverOwnWindow();
    bool isClosing(xcb_window_t window);

    const X11Connection& m_connection;
    X11OwnWindows m_own;
    std::uint8_t m_opcode = 0;
    std::vector<X11Placement> m_ownWindows; // shown, as of the last event that was handled
    std::deque<XcbEvent> m_pending;         // received, not yet handled
};

} // namespace vantro::capture::x11
