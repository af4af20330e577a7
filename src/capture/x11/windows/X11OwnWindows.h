#pragma once

#include "capture/x11/server/X11Connection.h"
#include "capture/x11/windows/X11OwnProcess.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace vantro::capture::x11 {

/// Recognizes windows that belong to us, by the process that made them: what the window says itself
/// (_NET_WM_PID) or what the server knows of its client (extension X-Resource). Outlived by the
/// connection; same thread.
class X11OwnWindows {
  public:
    /// The windows in `alsoOwn` count too.
    X11OwnWindows(const X11Connection& connection, IsOwnProcess isOwnProcess,
                  std::vector<std::uint32_t> alsoOwn = {});

    /// Whether the window is ours or holds one that is, as a window manager's frame does.
    bool isOwn(xcb_window_t window);
    /// What was found out before counts no more: windows have come, gone or moved into others.
    void forget();

  private:
    bool isAnyOwn(const std::vector<xcb_window_t>& windows);
    bool isOwnClient(xcb_window_t window);

    const X11Connection& m_connection;
    IsOwnProcess m_isOwnProcess;
    std::vector<std::uint32_t> m_alsoOwn;
    bool m_canAskServer = false;
    std::unordered_map<xcb_window_t, bool> m_windows;
    std::unordered_map<std::uint32_t, bool> m_clients; // by what their windows' numbers begin with
};

} // namespace vantro::capture::x11
