#pragma once

#include "capture/x11/windows/X11WindowTree.h"

#include <optional>

namespace vantro::capture::x11 {

/// Where a window is seen within the top-level window that holds it.
struct X11VisiblePart {
    /// The window with its title bar and borders, and without the invisible margins that window
    /// managers and toolkits put around it, in pixels of the top-level window with its border.
    media::color::PixelRect rect;
    int windowX = 0; ///< the corner inside of the window's own border, likewise
    int windowY = 0;
    bool operator==(const X11VisiblePart&) const = default;
};

/// Nothing while the window is not shown, or its frame does not hold it, as when a window manager
/// lets the frame shrink to an icon.
std::optional<X11VisiblePart> visiblePart(const X11Connection& connection, xcb_window_t window,
                                          const X11Placement& topLevel);

/// What is seen of a window, on the screen, shown or not. Nothing when it has gone.
std::optional<media::color::PixelRect> visibleRect(const X11Connection& connection,
                                                   xcb_window_t window);

/// Recognizes the events that may give a window another visible part. Outlived by the connection.
class X11VisiblePartEvents {
  public:
    explicit X11VisiblePartEvents(const X11Connection& connection);

    /// From now on the connection is told of the window's changes.
    void watch(xcb_window_t window) const;
    bool isChange(const xcb_generic_event_t& event) const;

  private:
    const X11Connection& m_connection;
    xcb_atom_t m_frameExtents;
    xcb_atom_t m_toolkitExtents;
};

} // namespace vantro::capture::x11
