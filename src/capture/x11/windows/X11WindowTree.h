#pragma once

#include "capture/x11/server/X11Connection.h"
#include "media/color/ColorConversion.h"

#include <optional>
#include <vector>

namespace vantro::capture::x11 {

/// A window as its parent places it.
struct X11Placement {
    xcb_window_t window = 0;
    media::color::PixelRect rect; ///< with the border, in pixels of the parent
    int border = 0;               ///< pixels on each side
    int depth = 0;                ///< bits of a pixel
    bool isShown = false;         ///< it and all its ancestors are mapped, and it has pixels
};

/// Nothing for a window that has gone.
std::optional<X11Placement> placementOf(const X11Connection& connection, xcb_window_t window);

/// Lowest first; windows that go meanwhile are left out.
std::vector<X11Placement> childrenOf(const X11Connection& connection, xcb_window_t parent);

/// The ancestor whose parent is the root, which a window manager may have put around the window;
/// the window itself where there is none. 0 when it has gone.
xcb_window_t topLevelOf(const X11Connection& connection, xcb_window_t window);

/// What both rectangles hold; empty (no width) when that is nothing.
media::color::PixelRect intersection(media::color::PixelRect a, media::color::PixelRect b);

} // namespace vantro::capture::x11
