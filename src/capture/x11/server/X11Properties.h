#pragma once

#include "capture/x11/server/X11Connection.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vantro::capture::x11 {

/// The server's number for a name; 0 when no client has ever used it.
xcb_atom_t findAtom(const X11Connection& connection, std::string_view name);

/// As findAtom, but the name gets a number where it has none.
xcb_atom_t makeAtom(const X11Connection& connection, std::string_view name);

/// A window's property as bytes; empty when it has none.
std::string textProperty(const X11Connection& connection, xcb_window_t window,
                         std::string_view name);

/// A window's property as 32-bit numbers; empty when it has none of that shape.
std::vector<std::uint32_t> numbersProperty(const X11Connection& connection, xcb_window_t window,
                                           std::string_view name);

} // namespace vantro::capture::x11
