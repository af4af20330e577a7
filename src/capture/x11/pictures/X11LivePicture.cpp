#include "capture/x11/pictures/X11LivePicture.h"

#include "base/Log.h"

namespace vantro::capture::x11 {

X11LivePicture::X11LivePicture(const X11Connection& connection, xcb_window_t window,
                               media::color::PixelRect area)
    : m_image(connection, area.width, area.height)
    , m_damage(X11DamageSource::create(connection, window, area.x, area.y))
    , m_wholeArea(area.width, area.height)
    , m_stale(area.width, area.height) {
    m_wholeArea.addAll();
    if (!m_damage) {
        base::logWarning(
            "The display lacks the extension DAMAGE: recording takes more processor time");
        m_comparison.emplace(area.width, area.height);
    }
}

void X11LivePicture::handle(const xcb_generic_event_t& event) {
    if (m_damage)
        m_damage->handle(event);
}

bool X11LivePicture::update(xcb_drawable_t drawable, int x, int y, pictures::TileMap& changed,
                            std::span<const media::color::PixelRect> ignored) {
    if (m_damage)
        m_damage->collect(m_stale, ignored);
    if (m_isAllStale)
        m_stale.addAll();
    if (!m_image.fetch(drawable, x, y, m_damage ? m_stale : m_wholeArea))
        return false;
    if (m_comparison)
        m_comparison->collect(m_image.pixels(), m_image.stride(), m_stale);
    m_isAllStale = false;
    changed.add(m_stale);
    m_stale.clear();
    return true;
}

} // namespace vantro::capture::x11
