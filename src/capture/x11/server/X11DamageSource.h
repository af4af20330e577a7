#pragma once

#include "capture/pictures/TileMap.h"
#include "capture/x11/server/X11Connection.h"

#include <memory>
#include <span>

namespace vantro::capture::x11 {

/// Tells where a window has changed since it was last asked (extension DAMAGE).
///
/// The server keeps the changed region and reports only that there is one, so that heavy drawing
/// costs one event and one question a frame. Outlived by the connection; same thread.
class X11DamageSource {
  public:
    /// Null when the extension is missing. (x, y) is the pixel of the window that the picture told
    /// of begins at. The window's children count too.
    static std::unique_ptr<X11DamageSource> create(const X11Connection& connection,
                                                   xcb_window_t window, int x, int y);
    ~X11DamageSource();
    X11DamageSource(const X11DamageSource&) = delete;
    X11DamageSource& operator=(const X11DamageSource&) = delete;

    std::uint32_t id() const { return m_damage; }
    /// Takes note of an event of the connection.
    void handle(const xcb_generic_event_t& event);
    /// Something has changed since `collect`.
    bool hasChanges() const { return m_hasChanges; }
    /// Adds what has changed, in pixels of the picture, and starts afresh. What changes after this
    /// is reported again, so pixels read after this are never older than what is told. Changes
    /// that lie wholly within one of `ignored` are left out.
    void collect(pictures::TileMap& changed, std::span<const media::color::PixelRect> ignored = {});

  private:
    X11DamageSource(const X11Connection& connection, xcb_window_t window, int x, int y);

    const X11Connection& m_connection;
    int m_x;
    int m_y;
    std::uint32_t m_damage;
    std::uint32_t m_region;
    std::uint8_t m_eventType;
    bool m_hasChanges = true;
};

} // namespace vantro::capture::x11
