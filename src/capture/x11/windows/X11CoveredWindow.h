#pragma once

#include "capture/x11/server/X11DamageSource.h"
#include "capture/x11/windows/X11WindowTree.h"

#include <memory>
#include <span>
#include <vector>

namespace vantro::capture::x11 {

/// A window of somebody else that lies, in part, beneath or above a window of ours, and whose
/// pixels the server keeps apart for as long as this lives. Outlived by the connection; same
/// thread.
class X11CoveredWindow {
  public:
    /// `own` are the rectangles on the screen that show our windows at this moment. What they hide
    /// of this window is black until it has painted it, which it is asked to; never our picture.
    X11CoveredWindow(const X11Connection& connection, const X11Placement& placement,
                     std::span<const media::color::PixelRect> own);
    ~X11CoveredWindow();
    X11CoveredWindow(const X11CoveredWindow&) = delete;
    X11CoveredWindow& operator=(const X11CoveredWindow&) = delete;

    const X11Placement& placement() const { return m_placement; }
    void moveTo(const X11Placement& placement);

    void handle(const xcb_generic_event_t& event);
    bool hasChanges() const { return !m_damage || m_damage->hasChanges(); }
    /// Begins to look for changes anew.
    void changesSeen();
    /// The window has to paint something before its pixels are whole.
    bool mustPaint() const { return m_mustPaint; }
    void awaitNoLonger() { m_mustPaint = false; }

    /// Whether nothing beneath `rect`, on the screen, shows through.
    bool covers(media::color::PixelRect rect) const;
    /// Draws the window's part of `rect`, on the screen, into a BGRX picture of it.
    void draw(media::color::PixelRect rect, std::uint8_t* picture, bool isBlended) const;

  private:
    void keepOwnPictureOut(std::span<const media::color::PixelRect> own);
    void nameContents();

    const X11Connection& m_connection;
    X11Placement m_placement;
    xcb_pixmap_t m_pixmap = 0;
    std::vector<media::color::PixelRect> m_shape; // its visible parts, in pixels of the pixmap
    std::unique_ptr<X11DamageSource> m_damage;
    bool m_mustPaint = false;
};

} // namespace vantro::capture::x11
