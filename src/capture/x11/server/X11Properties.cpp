#include "capture/x11/server/X11Properties.h"

namespace vantro::capture::x11 {
namespace {

constexpr std::uint32_t longestProperty = 1U << 18; // in 4-byte units: longer ones are cut off

xcb_atom_t atom(const X11Connection& connection, std::string_view name, bool mustExist) {
    const auto reply =
        connection.await(xcb_intern_atom_reply,
                         xcb_intern_atom(connection.get(), mustExist ? 1 : 0,
                                         static_cast<std::uint16_t>(name.size()), name.data()));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

XcbOwned<xcb_get_property_reply_t> property(const X11Connection& connection, xcb_window_t window,
                                            std::string_view name) {
    const xcb_atom_t atom = findAtom(connection, name);
    if (atom == XCB_ATOM_NONE)
        return nullptr;
    return connection.await(
        xcb_get_property_reply,
        xcb_get_property(connection.get(), 0, window, atom, XCB_ATOM_ANY, 0, longestProperty));
}

} // namespace

xcb_atom_t findAtom(const X11Connection& connection, std::string_view name) {
    return atom(connection, name, true);
}

xcb_atom_t makeAtom(const X11Connection& connection, std::string_view name) {
    return atom(connection, name, false);
}

std::string textProperty(const X11Connection& connection, xcb_window_t window,
                         std::string_view name) {
    const auto reply = property(connection, window, name);
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::vector<std::uint32_t> numbersProperty(const X11Connection& connection, xcb_window_t window,
                                           std::string_view name) {
    const auto reply = property(connection, window, name);
    if (!reply || reply->format != 32)
        return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

} // namespace vantro::capture::x11
