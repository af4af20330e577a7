#include "capture/x11/server/X11Connection.h"

#include <algorithm>
#include <array>
#include <ctime>

#include <fmt/format.h>
#include <poll.h>

namespace vantro::capture::x11 {
namespace {

std::string cannotOpen(const std::string& display) {
    char* host = nullptr;
    int number = 0;
    if (xcb_parse_display(display.empty() ? nullptr : display.c_str(), &host, &number, nullptr) ==
        0)
        return display.empty() ? "no display: the environment variable DISPLAY is not set"
                               : fmt::format("cannot open display {}", display);
    const XcbOwned<char> owned(host);
    return fmt::format("cannot open display {}:{}", host, number);
}

} // namespace

std::expected<X11Connection, std::string> X11Connection::open(const std::string& display) {
    int screenNumber = 0;
    X11Connection connection;
    connection.m_connection.reset(
        xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber));
    if (connection.isLost())
        return std::unexpected(cannotOpen(display));
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (; screenNumber > 0 && screens.rem > 1; --screenNumber)
        xcb_screen_next(&screens);
    connection.m_screen = screens.data;
    return connection;
}

bool X11Connection::hasExtension(xcb_extension_t& extension) const {
    const auto* data = xcb_get_extension_data(get(), &extension);
    return data != nullptr && data->present != 0;
}

std::uint8_t X11Connection::firstEvent(xcb_extension_t& extension) const {
    return xcb_get_extension_data(get(), &extension)->first_event;
}

std::uint8_t X11Connection::majorOpcode(xcb_extension_t& extension) const {
    return xcb_get_extension_data(get(), &extension)->major_opcode;
}

void X11Connection::wait(int wakeUp, std::optional<base::HostTime> deadline) const {
    xcb_flush(get());
    std::array<pollfd, 2> sources{
        {{.fd = xcb_get_file_descriptor(get()), .events = POLLIN, .revents = 0},
         {.fd = wakeUp, .events = POLLIN, .revents = 0}}};
    timespec remaining{};
    if (deadline) {
        const auto span = std::max(*deadline - base::hostNow(), base::HostDuration::zero());
        const auto seconds = std::chrono::floor<std::chrono::seconds>(span);
        remaining.tv_sec = seconds.count();
        remaining.tv_nsec = (span - seconds).count();
    }
    ppoll(sources.data(), sources.size(), deadline ? &remaining : nullptr, nullptr);
}

} // namespace vantro::capture::x11
