#pragma once

#include "capture/pictures/PictureComparison.h"
#include "capture/x11/server/X11DamageSource.h"
#include "capture/x11/server/X11Image.h"

#include <optional>
#include <span>

namespace vantro::capture::x11 {

/// A rectangle of a window's pixels that knows where it has changed: by the server's word (DAMAGE),
/// or else by comparison. Outlived by the connection; same thread.
class X11LivePicture {
  public:
    /// Changes of `window` count; `area` is the part of it to show, in its pixels.
    X11LivePicture(const X11Connection& connection, xcb_window_t window,
                   media::color::PixelRect area);

    X11Image& image() { return m_image; }
    void handle(const xcb_generic_event_t& event);
    bool hasChanges() const { return !m_damage || m_damage->hasChanges(); }
    /// The next update counts all of it as changed.
    void invalidate() { m_isAllStale = true; }
    /// Reads what has changed from `drawable`, in which the picture begins at (x, y), and adds it
    /// to `changed`. Changes wholly within one of `ignored` are left out where the server tells of
    /// changes. False when the server refuses; the same is read again next time.
    bool update(xcb_drawable_t drawable, int x, int y, pictures::TileMap& changed,
                std::span<const media::color::PixelRect> ignored = {});

  private:
    X11Image m_image;
    std::unique_ptr<X11DamageSource> m_damage; // null: the comparison does its work
    std::optional<pictures::PictureComparison> m_comparison;
    pictures::TileMap m_wholeArea;
    pictures::TileMap m_stale; // not yet read
    bool m_isAllStale = true;
};

} // namespace vantro::capture::x11
