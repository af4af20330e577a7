#pragma once

#include <memory>
#include <string>

#include <xcb/xcb.h>

namespace vantro::test {

struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using XConnection = std::unique_ptr<xcb_connection_t, Disconnect>;

/// Throws std::runtime_error when there is no such display.
XConnection connectTo(const std::string& display);
const xcb_screen_t& screenOf(const XConnection& connection);
xcb_atom_t atom(const XConnection& connection, const std::string& name);

/// Returns when the server has carried out everything sent before.
void roundTrip(const XConnection& connection);

} // namespace vantro::test
