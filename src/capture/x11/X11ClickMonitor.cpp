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
    } const mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS};
    // Checked, so that the server watches before this returns.
    const XcbError error(xcb_request_check(
        connection.get(),
        xcb_input_xi_select_events_checked(connection.get(), connection.root(), 1, &mask.head)));
    return !error && !connection.isLost();
}

} // namespace

std::unique_ptr<ClickMonitor> X11ClickMonitor::create(const std::string& display,
                                                      MouseButton button,
                                                      std::function<void()> handler) {
    auto connection = X11Connection::open(display);
    if (!connection || !selectRawPresses(*connection)) {
        logWarning("Clicks are not recorded: the display lacks the extension XInputExtension 2");
        return nullptr;
    }
    return std::make_unique<X11ClickMonitor>(std::move(*connection), button, std::move(handler));
}

X11ClickMonitor::X11ClickMonitor(X11Connection connection, MouseButton button,
                                 std::function<void()> handler)
    : m_connection(std::move(connection))
    , m_detail(button == MouseButton::left ? leftButton : rightButton)
    , m_handler(std::move(handler))
    , m_thread([this](const std::stop_token& stop) { run(stop); }) {}

X11ClickMonitor::~X11ClickMonitor() {
    m_thread.request_stop();
    m_wakeUp.ring();
}

void X11ClickMonitor::run(const std::stop_token& stop) {
    setThreadName("cursor.clicks");
    const auto opcode = m_connection.majorOpcode(xcb_input_id);
    while (!stop.stop_requested() && !m_connection.isLost()) {
        while (const XcbEvent event = m_connection.pollEvent()) {
            if ((event->response_type & 0x7f) != XCB_GE_GENERIC)
                continue;
            const auto& press = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(*event);
            if (press.extension == opcode && press.event_type == XCB_INPUT_RAW_BUTTON_PRESS &&
                press.detail == m_detail)
                m_handler();
        }
        if (!m_connection.isLost())
            m_connection.wait(m_wakeUp.fd());
    }
}

} // namespace vantro
