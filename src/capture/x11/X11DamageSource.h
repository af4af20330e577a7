#pragma once

#include "capture/TileMap.h"
#include "capture/x11/X11Connection.h"

#include <memory>

namespace vantro {

/// Tells where the screen has changed since it was last asked (extension DAMAGE).
///
/// The server keeps the changed region and reports only that there is one, so that heavy drawing
/// costs one event and one question a frame. Outlived by the connection; same thread.
class X11DamageSource {
  public:
    /// Null when the extension is missing. `area` is the rectangle of the screen that counts.
    static std::unique_ptr<X11DamageSource> create(const X11Connection& connection, PixelRect area);

    /// Takes note of an event of the connection.
    void handle(const xcb_generic_event_t& event);
    /// Something has changed since `collect`.
    bool hasChanges() const { return m_hasChanges; }
    /// Adds what has changed, in pixels of the area, and starts afresh. What changes after this is
    /// reported again, so pixels read after this are never older than what is told.
    void collect(TileMap& changed);

  private:
    X11DamageSource(const X11Connection& connection, PixelRect area);

    const X11Connection& m_connection;
    PixelRect m_area;
    std::uint32_t m_damage;
    std::uint32_t m_region;
    std::uint8_t m_eventType;
    bool m_hasChanges = true;
};

} // namespace vantro
