#pragma once

#include "capture/x11/server/X11Connection.h"
#include "media/color/ColorConversion.h"

#include <optional>
#include <vector>

namespace vantro::capture::x11 {

/// The parts of a window that show, in pixels from the corner inside of its border; most windows
/// are one rectangle, with the border. Nothing where the server cannot tell or the window has gone.
std::optional<std::vector<media::color::PixelRect>> shownParts(const X11Connection& connection,
                                                               xcb_window_t window);

/// What does not show of a window within `bounds`, both in pixels from the corner inside of its
/// border. Empty for most windows, and where the server cannot tell.
std::vector<media::color::PixelRect>
cutOutParts(const X11Connection& connection, xcb_window_t window, media::color::PixelRect bounds);

/// From now on, or no longer, the connection is told when the window's shape changes.
void watchShape(const X11Connection& connection, xcb_window_t window, bool isWatched);

/// Whether an event tells that a watched window has another shape.
bool isShapeChange(const X11Connection& connection, const xcb_generic_event_t& event);

} // namespace vantro::capture::x11
