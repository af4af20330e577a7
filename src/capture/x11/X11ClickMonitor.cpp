#include "capture/x11/X11ClickMonitor.h"

#include "base/Log.h"
#include "base/SerialQueue.h"

#include <xcb/xinput.h>

namespace vantro {
namespace {

constexpr std::uint32_t leftButton = 1;
constexpr std::uint32_t rightButton = 3;

/// Raw events come to every listener, grabs or not, from version 2.1 on.
bool selectRawPresses(const X11Connection& connection) {
    if (!connection.hasExtension(xcb_input_id))
        return false;
    const auto version = connection.await(xcb_input_xi_query_version_reply,
                                          xcb_input_xi_query_version(connection.get(), 2, 2));
    if (!version || version->major_version < 2)
        return false;
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t bits;
    } const mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                 XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS |
                     XCB_INPUT_XI_EVENT_MASK_RAW_TOUCH_BEGIN};
    // Checked, so that the server watches before this returns.
    const XcbError error(xcb_request_check(
        connection.get(),
        xcb_input_xi_select_events_checked(connection.get(), connection.root(), 1, &mask.head)));
    return !error && !connection.isLost();
}

} // namespace

bool isPressOf(MouseButton button, const xcb_generic_event_t& event, std::uint8_t opcode) {
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC)
        return false;
    const auto& press = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    if (press.extension != opcode)
        return false;
    if (press.event_type == XCB_INPUT_RAW_TOUCH_BEGIN)
        return button == MouseButton::left;
    return press.event_type == XCB_INPUT_RAW_BUTTON_PRESS &&
           press.detail == (button == MouseButton::left ? leftButton : rightButton);
}

std::unique_ptr<ClickMonitor> X11ClickMonitor::create(const std::string& display,
                                                      MouseButton button, IsOwnProcess isOwnProcess,
                                                      std::function<void()> handler) {
    auto connection = X11Connection::open(display);
    if (!connection || !selectRawPresses(*connection)) {
        logWarning("Clicks are not recorded: the display lacks the extension XInputExtension 2");
        return nullptr;
    }
    return std::make_unique<X11ClickMonitor>(std::move(*connection), button,
                                             std::move(isOwnProcess), std::move(handler));
}

X11ClickMonitor::X11ClickMonitor(X11Connection connection, MouseButton button,
                                 IsOwnProcess isOwnProcess, std::function<void()> handler)
    : m_connection(std::move(connection))
    , m_button(button)
    , m_own(m_connection, std::move(isOwnProcess))
    , m_handler(std::move(handler))
    , m_thread([this](const std::stop_token& stop) { run(stop); }) {}

X11ClickMonitor::~X11ClickMonitor() {
    m_thread.request_stop();
    m_wakeUp.ring();
}

bool X11ClickMonitor::isOverOwnWindow() {
    const auto pointer = m_connection.await(
        xcb_query_pointer_reply, xcb_query_pointer(m_connection.get(), m_connection.root()));
    m_own.forget(); // nothing tells this connection of windows that come and go
    return pointer && pointer->child != XCB_NONE && m_own.isOwn(pointer->child);
}

void X11ClickMonitor::run(const std::stop_token& stop) {
    setThreadName("cursor.clicks");
    const auto opcode = m_connection.majorOpcode(xcb_input_id);
    while (!stop.stop_requested() && !m_connection.isLost()) {
        while (const XcbEvent event = m_connection.pollEvent())
            if (isPressOf(m_button, *event, opcode) && !isOverOwnWindow())
                m_handler();
        if (!m_connection.isLost())
            m_connection.wait(m_wakeUp.fd());
    }
}

} // namespace vantro
