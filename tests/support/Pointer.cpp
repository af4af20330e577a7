#include "support/Pointer.h"

#include "support/XConnection.h"

#include <algorithm>
#include <cstdlib>

#include <xcb/xtest.h>

namespace vantro::test {

struct Pointer::Implementation {
    XConnection connection;

    void fake(std::uint8_t type, int detail, int x = 0, int y = 0) const {
        xcb_test_fake_input(connection.get(), type, static_cast<std::uint8_t>(detail), 0,
                            screenOf(connection).root, static_cast<std::int16_t>(x),
                            static_cast<std::int16_t>(y), 0);
    }
};

Pointer::Pointer(const XServer& server)
    : m_implementation(new Implementation{connectTo(server.display())}) {}

Pointer::~Pointer() = default;

void Pointer::moveTo(int x, int y) {
    m_implementation->fake(XCB_MOTION_NOTIFY, 0, x, y);
    roundTrip(m_implementation->connection);
}

base::HostTime Pointer::click(int button) {
    const base::HostTime before = base::hostNow();
    m_implementation->fake(XCB_BUTTON_PRESS, button);
    m_implementation->fake(XCB_BUTTON_RELEASE, button);
    roundTrip(m_implementation->connection);
    return before;
}

void Pointer::setButtons(const std::vector<std::uint8_t>& map) {
    auto* server = m_implementation->connection.get();
    auto* const now =
        xcb_get_pointer_mapping_reply(server, xcb_get_pointer_mapping(server), nullptr);
    std::vector<std::uint8_t> whole(xcb_get_pointer_mapping_map(now),
                                    xcb_get_pointer_mapping_map(now) + now->map_len);
    std::free(now);
    std::ranges::copy(map, whole.begin());
    std::free(xcb_set_pointer_mapping_reply(
        server,
        xcb_set_pointer_mapping(server, static_cast<std::uint8_t>(whole.size()), whole.data()),
        nullptr));
}

} // namespace vantro::test
