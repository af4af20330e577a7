#pragma once

#include "capture/PointerSource.h"
#include "capture/x11/X11Connection.h"
#include "capture/x11/X11WakeUp.h"

#include <functional>
#include <memory>
#include <thread>

namespace vantro {

/// Watches one button through XInput raw presses, which come whatever window or client has the
/// pointer. Has a connection and a thread of its own, which ends with the server.
class X11ClickMonitor final : public ClickMonitor {
  public:
    /// Null when the display or the extension is missing.
    static std::unique_ptr<ClickMonitor> create(const std::string& display, MouseButton button,
                                                std::function<void()> handler);
    X11ClickMonitor(X11Connection connection, MouseButton button, std::function<void()> handler);
    ~X11ClickMonitor() override;

  private:
    void run(const std::stop_token& stop);

    X11Connection m_connection;
    std::uint32_t m_detail; // the button's number
    std::function<void()> m_handler;
    X11WakeUp m_wakeUp;
    std::jthread m_thread;
};

} // namespace vantro
