#include "capture/x11/windows/X11CapturedPlace.h"

#include "capture/pictures/PictureFit.h"

#include <xcb/randr.h>

namespace vantro::capture::x11 {

X11CapturedPlace::X11CapturedPlace(const X11Connection& connection, const RecordingTarget& target)
    : m_connection(connection)
    , m_windowEvents(connection)
    , m_target(target)
    , m_scale(target.display.backingScaleFactor)
    , m_window(target.mode == model::CaptureMode::window ? target.windowID : connection.root()) {
    if (m_target.mode == model::CaptureMode::window) {
        m_windowEvents.watch(m_window);
    } else if (connection.hasExtension(xcb_randr_id)) {
        m_firstRandrEvent = connection.firstEvent(xcb_randr_id);
        xcb_randr_select_input(connection.get(), connection.root(),
                               XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    }
    m_picture = capturedArea(queryGeometry(connection), target);
    follow();
    m_firstWidth = m_picture.width;
    m_firstHeight = m_picture.height;
}

void X11CapturedPlace::handle(const xcb_generic_event_t& event) {
    const int type = event.response_type & 0x7f;
    if (m_target.mode == model::CaptureMode::window)
        m_isStale |= m_windowEvents.isChange(event);
    else
        m_isStale |=
            m_firstRandrEvent != 0 && (type == m_firstRandrEvent + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
                                       type == m_firstRandrEvent + XCB_RANDR_NOTIFY);
}

void X11CapturedPlace::follow() {
    m_isStale = false;
    if (m_target.mode == model::CaptureMode::window)
        followWindow();
    else if (m_target.mode == model::CaptureMode::screen)
        followDisplay();
}

void X11CapturedPlace::followWindow() {
    const auto topLevel = placementOf(m_connection, topLevelOf(m_connection, m_window));
    if (!topLevel)
        return;
    if (const auto part = visiblePart(m_connection, m_window, *topLevel)) {
        m_picture = part->rect;
        m_picture.x -= part->windowX;
        m_picture.y -= part->windowY;
    }
}

void X11CapturedPlace::followDisplay() {
    const X11Geometry geometry = queryGeometry(m_connection);
    if (const auto* monitor = geometry.find(m_target.display.displayID))
        m_picture = monitor->rect;
}

std::optional<model::Point> X11CapturedPlace::pointer() {
    if (m_isStale)
        follow();
    // One answer says where the pointer is and where the window that it is told relative to.
    auto reply = m_connection.await(xcb_query_pointer_reply,
                                    xcb_query_pointer(m_connection.get(), m_window));
    if (!reply || reply->same_screen == 0)
        return {};
    const double x = reply->win_x - m_picture.x;
    const double y = reply->win_y - m_picture.y;
    const bool isFitted = m_picture.width != m_firstWidth || m_picture.height != m_firstHeight;
    if (!isFitted)
        return model::Point{x / m_scale, y / m_scale};
    const auto fitting =
        pictures::fitting(m_picture.width, m_picture.height, m_target.width, m_target.height);
    return model::Point{(fitting.x + x * fitting.width / m_picture.width) / m_scale,
                        (fitting.y + y * fitting.height / m_picture.height) / m_scale};
}

} // namespace vantro::capture::x11
