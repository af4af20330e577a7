#include "support/XConnection.h"

#include <cstdlib>
#include <stdexcept>

namespace vantro::test {

XConnection connectTo(const std::string& display) {
    XConnection connection(xcb_connect(display.c_str(), nullptr));
    if (xcb_connection_has_error(connection.get()) != 0)
        throw std::runtime_error("cannot open display " + display);
    return connection;
}

const xcb_screen_t& screenOf(const XConnection& connection) {
    return *xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data;
}

xcb_atom_t atom(const XConnection& connection, const std::string& name) {
    auto* reply = xcb_intern_atom_reply(
        connection.get(),
        xcb_intern_atom(connection.get(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr);
    const xcb_atom_t result = reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
    std::free(reply);
    return result;
}

void roundTrip(const XConnection& connection) {
    std::free(xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()),
                                        nullptr));
}

} // namespace vantro::test
