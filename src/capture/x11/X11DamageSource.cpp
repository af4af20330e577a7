#include "capture/x11/X11DamageSource.h"

#include "base/Log.h"

#include <xcb/damage.h>
#include <xcb/xfixes.h>

namespace vantro {

std::unique_ptr<X11DamageSource> X11DamageSource::create(const X11Connection& connection,
                                                         PixelRect area) {
    if (!connection.hasExtension(xcb_damage_id) || !connection.hasExtension(xcb_xfixes_id)) {
        logWarning("The display lacks the extension DAMAGE: recording takes more processor time");
        return nullptr;
    }
    connection.await(xcb_xfixes_query_version_reply,
                     xcb_xfixes_query_version(connection.get(), 5, 0));
    connection.await(xcb_damage_query_version_reply,
                     xcb_damage_query_version(connection.get(), 1, 1));
    return std::unique_ptr<X11DamageSource>(new X11DamageSource(connection, area));
}

// Both server objects go with the connection.
X11DamageSource::X11DamageSource(const X11Connection& connection, PixelRect area)
    : m_connection(connection)
    , m_area(area)
    , m_damage(xcb_generate_id(connection.get()))
    , m_region(xcb_generate_id(connection.get()))
    , m_eventType(
          static_cast<std::uint8_t>(connection.firstEvent(xcb_damage_id) + XCB_DAMAGE_NOTIFY)) {
    xcb_xfixes_create_region(connection.get(), m_region, 0, nullptr);
    xcb_damage_create(connection.get(), m_damage, connection.root(),
                      XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
}

void X11DamageSource::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) == m_eventType)
        m_hasChanges = true;
}

void X11DamageSource::collect(TileMap& changed) {
    m_hasChanges = false;
    xcb_damage_subtract(m_connection.get(), m_damage, XCB_NONE, m_region);
    const auto reply = m_connection.await(xcb_xfixes_fetch_region_reply,
                                          xcb_xfixes_fetch_region(m_connection.get(), m_region));
    if (!reply)
        return; // a lost connection, which the next request tells of
    const auto* rectangles = xcb_xfixes_fetch_region_rectangles(reply.get());
    const int count = xcb_xfixes_fetch_region_rectangles_length(reply.get());
    for (int index = 0; index < count; ++index) {
        const auto& rect = rectangles[index];
        changed.add({rect.x - m_area.x, rect.y - m_area.y, rect.width, rect.height});
    }
}

} // namespace vantro
