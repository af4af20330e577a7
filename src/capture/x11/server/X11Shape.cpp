#include "capture/x11/server/X11Shape.h"

#include <algorithm>
#include <span>

#include <xcb/shape.h>
#include <xcb/xfixes.h>

namespace vantro::capture::x11 {
namespace {

/// A region that the server keeps, made from a window's shape.
class ShapeRegion {
  public:
    ShapeRegion(const X11Connection& connection, xcb_window_t window)
        : m_connection(connection), m_region(xcb_generate_id(connection.get())) {
        // Regions are there only for who has asked for the version; the answer does not matter.
        xcb_discard_reply(connection.get(),
                          xcb_xfixes_query_version(connection.get(), 5, 0).sequence);
        xcb_xfixes_create_region_from_window(connection.get(), m_region, window,
                                             XCB_SHAPE_SK_BOUNDING);
    }
    ~ShapeRegion() { xcb_xfixes_destroy_region(m_connection.get(), m_region); }
    ShapeRegion(const ShapeRegion&) = delete;
    ShapeRegion& operator=(const ShapeRegion&) = delete;

    void invertWithin(media::color::PixelRect bounds) {
        xcb_xfixes_invert_region(
            m_connection.get(), m_region,
            {static_cast<std::int16_t>(bounds.x), static_cast<std::int16_t>(bounds.y),
             static_cast<std::uint16_t>(bounds.width), static_cast<std::uint16_t>(bounds.height)},
            m_region);
    }

    std::optional<std::vector<media::color::PixelRect>> rectangles() const {
        const auto reply = m_connection.await(
            xcb_xfixes_fetch_region_reply, xcb_xfixes_fetch_region(m_connection.get(), m_region));
        if (!reply)
            return {};
        const std::span rectangles(
            xcb_xfixes_fetch_region_rectangles(reply.get()),
            static_cast<std::size_t>(xcb_xfixes_fetch_region_rectangles_length(reply.get())));
        std::vector<media::color::PixelRect> all;
        std::ranges::transform(rectangles, std::back_inserter(all), [](const auto& each) {
            return media::color::PixelRect{each.x, each.y, each.width, each.height};
        });
        return all;
    }

  private:
    const X11Connection& m_connection;
    xcb_xfixes_region_t m_region;
};

} // namespace

std::optional<std::vector<media::color::PixelRect>> shownParts(const X11Connection& connection,
                                                               xcb_window_t window) {
    if (!connection.hasExtension(xcb_xfixes_id))
        return {};
    return ShapeRegion(connection, window).rectangles();
}

std::vector<media::color::PixelRect>
cutOutParts(const X11Connection& connection, xcb_window_t window, media::color::PixelRect bounds) {
    if (!connection.hasExtension(xcb_xfixes_id))
        return {};
    ShapeRegion region(connection, window);
    region.invertWithin(bounds);
    return region.rectangles().value_or(std::vector<media::color::PixelRect>());
}

void watchShape(const X11Connection& connection, xcb_window_t window, bool isWatched) {
    if (connection.hasExtension(xcb_shape_id))
        xcb_shape_select_input(connection.get(), window, isWatched ? 1 : 0);
}

bool isShapeChange(const X11Connection& connection, const xcb_generic_event_t& event) {
    return connection.hasExtension(xcb_shape_id) &&
           (event.response_type & 0x7f) == connection.firstEvent(xcb_shape_id) + XCB_SHAPE_NOTIFY;
}

} // namespace vantro::capture::x11
