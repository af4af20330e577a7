#include "capture/x11/server/X11DamageSource.h"

#include <algorithm>

#include <xcb/damage.h>
#include <xcb/xfixes.h>

namespace vantro::capture::x11 {
namespace {

bool isWithin(media::color::PixelRect inner, media::color::PixelRect outer) {
    return inner.x >= outer.x && inner.y >= outer.y &&
           inner.x + inner.width <= outer.x + outer.width &&
           inner.y + inner.height <= outer.y + outer.height;
}

} // namespace

std::unique_ptr<X11DamageSource> X11DamageSource::create(const X11Connection& connection,
                                                         xcb_window_t window, int x, int y) {
    if (!connection.hasExtension(xcb_damage_id) || !connection.hasExtension(xcb_xfixes_id))
        return nullptr;
    connection.await(xcb_xfixes_query_version_reply,
                     xcb_xfixes_query_version(connection.get(), 5, 0));
    connection.await(xcb_damage_query_version_reply,
                     xcb_damage_query_version(connection.get(), 1, 1));
    return std::unique_ptr<X11DamageSource>(new X11DamageSource(connection, window, x, y));
}

X11DamageSource::X11DamageSource(const X11Connection& connection, xcb_window_t window, int x, int y)
    : m_connection(connection)
    , m_x(x)
    , m_y(y)
    , m_damage(xcb_generate_id(connection.get()))
    , m_region(xcb_generate_id(connection.get()))
    , m_eventType(
          static_cast<std::uint8_t>(connection.firstEvent(xcb_damage_id) + XCB_DAMAGE_NOTIFY)) {
    xcb_xfixes_create_region(connection.get(), m_region, 0, nullptr);
    xcb_damage_create(connection.get(), m_damage, window, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
}

X11DamageSource::~X11DamageSource() {
    // The server ends a window's damage with the window: then it refuses this, which is no harm.
    xcb_damage_destroy(m_connection.get(), m_damage);
    xcb_xfixes_destroy_region(m_connection.get(), m_region);
}

void X11DamageSource::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) == m_eventType &&
        reinterpret_cast<const xcb_damage_notify_event_t&>(event).damage == m_damage)
        m_hasChanges = true;
}

void X11DamageSource::collect(pictures::TileMap& changed,
                              std::span<const media::color::PixelRect> ignored) {
    m_hasChanges = false;
    xcb_damage_subtract(m_connection.get(), m_damage, XCB_NONE, m_region);
    const auto reply = m_connection.await(xcb_xfixes_fetch_region_reply,
                                          xcb_xfixes_fetch_region(m_connection.get(), m_region));
    if (!reply)
        return; // a lost connection, which the next request tells of
    const auto* rectangles = xcb_xfixes_fetch_region_rectangles(reply.get());
    const int count = xcb_xfixes_fetch_region_rectangles_length(reply.get());
    for (int index = 0; index < count; ++index) {
        const auto& each = rectangles[index];
        const media::color::PixelRect rect{each.x - m_x, each.y - m_y, each.width, each.height};
        if (std::ranges::none_of(
                ignored, [&](media::color::PixelRect part) { return isWithin(rect, part); }))
            changed.add(rect);
    }
}

} // namespace vantro::capture::x11
