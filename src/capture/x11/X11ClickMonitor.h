#pragma once

#include "capture/PointerSource.h"
#include "capture/x11/X11OwnWindows.h"
#include "capture/x11/X11WakeUp.h"

#include <functional>
#include <memory>
#include <thread>

namespace vantro {

/// Whether an event of XInput is a press of the button.
bool isPressOf(MouseButton button, const xcb_generic_event_t& event, std::uint8_t opcode);

/// Watches one button through XInput raw presses, which come whatever window or client has the
/// pointer. A touch counts as a press of the left button; a pen presses buttons itself. Presses
/// over own windows are left out. Has a connection and a thread of its own, which ends with the
/// server.
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
    bool isOverOwnWindow();

    X11Connection m_connection;
    MouseButton m_button;
    X11OwnWindows m_own;
    std::function<void()> m_handler;
    X11WakeUp m_wakeUp;
    std::jthread m_thread;
};

} // namespace vantro
