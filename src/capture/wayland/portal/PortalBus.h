#pragma once

#include "bus/EventLoop.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vantro::capture::wayland {

inline constexpr const char* portalName = "org.freedesktop.portal.Desktop";
inline constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
inline constexpr const char* screenCastInterface = "org.freedesktop.portal.ScreenCast";

/// For a user whose desktop has no screen-cast portal.
inline constexpr const char* noPortalText =
    "no screen-sharing service answers on this desktop; install xdg-desktop-portal and the part of "
    "it for your desktop (xdg-desktop-portal-gnome, -kde or -wlr)";

/// A connection to the user's session bus, whose messages are handled on a thread of its own,
/// "com.vantro.portal". One thread constructs, starts and stops it; calls may be made on any.
class PortalBus {
  public:
    /// Throws std::runtime_error.
    PortalBus();
    ~PortalBus();
    PortalBus(const PortalBus&) = delete;
    PortalBus& operator=(const PortalBus&) = delete;

    sdbus::IConnection& connection() { return *m_connection; }
    /// The path under which the portal answers: its `kind` is "request" or "session", and `token`
    /// is what it is asked to call it.
    std::string handle(const char* kind, const std::string& token) const;
    /// Calls `told` with whether the portal runs, whenever that changes. Before the start.
    void watchPortal(std::function<void(bool isThere)> told);
    /// Signals and answers arrive from here on. `lost` is called when the bus goes away.
    void start(std::function<void()> lost);
    /// Nothing arrives after this has returned. Harmless when repeated. Not on the bus's thread.
    void stop();

  private:
    std::unique_ptr<sdbus::IConnection> m_connection;
    sdbus::Slot m_portalWatch;
    std::optional<bus::EventLoop> m_loop;
};

} // namespace vantro::capture::wayland
