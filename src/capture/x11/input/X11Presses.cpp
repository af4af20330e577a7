#include "capture/x11/input/X11Presses.h"

#include "base/Log.h"
#include "capture/CaptureClock.h"

#include <algorithm>

#include <xcb/xinput.h>

namespace vantro::capture::x11 {
namespace {

constexpr std::uint8_t leftButton = 1;
constexpr std::uint8_t rightButton = 3;

struct EventMask {
    xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
    std::uint32_t bits =
        XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_TOUCH_BEGIN;
};

/// Raw events come to every listener, grabs or not, from version 2.1 on.
bool selectEvents(const X11Connection& connection) {
    const std::uint32_t structure = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    if (!connection.hasExtension(xcb_input_id))
        return false;
    const auto version = connection.await(xcb_input_xi_query_version_reply,
                                          xcb_input_xi_query_version(connection.get(), 2, 2));
    if (!version || version->major_version < 2)
        return false;
    const EventMask mask;
    xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_EVENT_MASK,
                                 &structure);
    // Checked, so that the server watches before this returns.
    const XcbError error(xcb_request_check(
        connection.get(),
        xcb_input_xi_select_events_checked(connection.get(), connection.root(), 1, &mask.head)));
    return !error && !connection.isLost();
}

/// What the user has made of a button: left-handed people swap two. Asked for each press, since it
/// also changes with the device.
std::uint8_t mappedButton(const X11Connection& connection, std::uint32_t button) {
    const auto map =
        connection.await(xcb_get_pointer_mapping_reply, xcb_get_pointer_mapping(connection.get()));
    if (!map || button == 0 || button > map->map_len)
        return static_cast<std::uint8_t>(button);
    return xcb_get_pointer_mapping_map(map.get())[button - 1];
}

} // namespace

X11Presses::X11Presses(const X11Connection& connection, IsOwnProcess isOwnProcess)
    : m_connection(connection), m_own(connection, std::move(isOwnProcess)) {
    if (!selectEvents(connection)) {
        base::logWarning(
            "Clicks are not recorded: the display lacks the extension XInputExtension 2");
        return;
    }
    m_opcode = connection.majorOpcode(xcb_input_id);
    for (const X11Placement& each : childrenOf(connection, connection.root()))
        addIfOwn(each);
}

std::optional<MouseButton> X11Presses::buttonOf(const xcb_generic_event_t& event) const {
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC)
        return {};
    const auto& press = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    if (press.extension != m_opcode)
        return {};
    if (press.event_type == XCB_INPUT_RAW_TOUCH_BEGIN)
        return MouseButton::left;
    if (press.event_type != XCB_INPUT_RAW_BUTTON_PRESS)
        return {};
    switch (mappedButton(m_connection, press.detail)) {
    case leftButton:
        return MouseButton::left;
    case rightButton:
        return MouseButton::right;
    default:
        return {};
    }
}

std::optional<X11Presses::Press> X11Presses::handle(const xcb_generic_event_t& event) {
    if (!isWatching())
        return {};
    followOwnWindows(event);
    const auto button = buttonOf(event);
    if (!button || isOverOwnWindow())
        return {};
    const auto time = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event).time;
    return Press{.button = *button, .time = hostTimeOf(time, base::hostNow())};
}

void X11Presses::watchMotion(bool isWatched) const {
    EventMask mask;
    if (isWatched)
        mask.bits |= XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
    if (isWatching())
        xcb_input_xi_select_events(m_connection.get(), m_connection.root(), 1, &mask.head);
}

XcbEvent X11Presses::nextEvent() {
    if (m_pending.empty())
        return m_connection.pollEvent();
    XcbEvent event = std::move(m_pending.front());
    m_pending.pop_front();
    return event;
}

void X11Presses::addIfOwn(const X11Placement& placement) {
    if (placement.isShown && m_own.isOwn(placement.window))
        m_ownWindows.push_back(placement);
}

/// Only our windows are looked at, so that others cost next to nothing when they move.
void X11Presses::followOwnWindows(const xcb_generic_event_t& event) {
    const auto forget = [this](xcb_window_t window) {
        std::erase_if(m_ownWindows, [=](const auto& each) { return each.window == window; });
    };
    switch (event.response_type & 0x7f) {
    case XCB_MAP_NOTIFY: {
        const auto window = reinterpret_cast<const xcb_map_notify_event_t&>(event).window;
        forget(window);
        if (const auto placement = placementOf(m_connection, window))
            addIfOwn(*placement);
        m_own.forget();
        return;
    }
    case XCB_CONFIGURE_NOTIFY: {
        const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        for (X11Placement& each : m_ownWindows)
            if (each.window == change.window)
                each.rect = {change.x, change.y, change.width + 2 * change.border_width,
                             change.height + 2 * change.border_width};
        return;
    }
    case XCB_UNMAP_NOTIFY:
        return forget(reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window);
    case XCB_DESTROY_NOTIFY:
        return forget(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
    case XCB_REPARENT_NOTIFY:
        return forget(reinterpret_cast<const xcb_reparent_notify_event_t&>(event).window);
    default:
        return;
    }
}

/// Whether an event that is received but not yet handled takes the window from the screen.
bool X11Presses::isClosing(xcb_window_t window) {
    while (XcbEvent event = m_connection.pollEvent())
        m_pending.push_back(std::move(event));
    return std::ranges::any_of(m_pending, [=](const XcbEvent& event) {
        const int type = event->response_type & 0x7f;
        return type == XCB_UNMAP_NOTIFY &&
               reinterpret_cast<const xcb_unmap_notify_event_t&>(*event).window == window;
    });
}

/// The server answers where the pointer is now; what has happened since the press lies in events
/// that come before the answer.
bool X11Presses::isOverOwnWindow() {
    const auto pointer = m_connection.await(
        xcb_query_pointer_reply, xcb_query_pointer(m_connection.get(), m_connection.root()));
    if (!pointer)
        return false;
    m_own.forget(); // windows may have moved into others
    if (pointer->child != XCB_NONE && m_own.isOwn(pointer->child))
        return true;
    const media::color::PixelRect place{pointer->root_x, pointer->root_y, 1, 1};
    return std::ranges::any_of(m_ownWindows, [&](const X11Placement& each) {
        return each.window == pointer->child || // and is being destroyed
               (intersection(each.rect, place).width > 0 && isClosing(each.window));
    });
}

} // namespace vantro::capture::x11
