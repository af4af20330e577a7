#include "capture/x11/X11PointerSource.h"

#include "capture/x11/X11ClickMonitor.h"

namespace vantro::capture::x11 {

X11PointerSource::X11PointerSource(X11Connection connection, std::string display,
                                   const X11Geometry& geometry, IsOwnProcess isOwnProcess)
    : m_connection(std::move(connection))
    , m_display(std::move(display))
    , m_isOwnProcess(std::move(isOwnProcess))
    , m_mainScreen(geometry.main().rect)
    , m_scale(geometry.scale) {}

model::Point X11PointerSource::location() {
    const auto reply = m_connection.await(
        xcb_query_pointer_reply, xcb_query_pointer(m_connection.get(), m_connection.root()));
    if (reply) {
        const int fromTop = reply->root_y - m_mainScreen.y;
        m_lastLocation = {.x = (reply->root_x - m_mainScreen.x) / m_scale,
                          .y = (m_mainScreen.height - fromTop) / m_scale};
    }
    return m_lastLocation;
}

std::unique_ptr<ClickMonitor> X11PointerSource::monitorPresses(MouseButton button,
                                                               std::function<void()> handler) {
    return X11ClickMonitor::create(m_display, button, m_isOwnProcess, std::move(handler));
}

} // namespace vantro::capture::x11
