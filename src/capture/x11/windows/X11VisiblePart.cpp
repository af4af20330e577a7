#include "capture/x11/windows/X11VisiblePart.h"

#include "capture/x11/server/X11Properties.h"

namespace vantro::capture::x11 {
namespace {

constexpr const char* frameExtents = "_NET_FRAME_EXTENTS";
constexpr const char* toolkitExtents = "_GTK_FRAME_EXTENTS";

/// How far what is seen reaches beyond the inside of a window, in pixels; less than nothing where
/// the toolkit draws a shadow within the window.
struct Extents {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;
};

std::optional<Extents> extentsProperty(const X11Connection& connection, xcb_window_t window,
                                       const char* name) {
    constexpr std::uint32_t widest = 1000; // pixels: beyond is nonsense
    const auto sides = numbersProperty(connection, window, name);
    if (sides.size() != 4)
        return {};
    for (const auto side : sides)
        if (side > widest)
            return {};
    const auto side = [&](std::size_t index) { return static_cast<int>(sides[index]); };
    return Extents{side(0), side(1), side(2), side(3)};
}

/// Nothing where neither the window manager nor the toolkit has told any.
std::optional<Extents> visibleExtents(const X11Connection& connection, xcb_window_t window) {
    const auto frame = extentsProperty(connection, window, frameExtents);
    const auto shadow = extentsProperty(connection, window, toolkitExtents);
    if (!frame && !shadow)
        return {};
    const Extents outer = frame.value_or(Extents{});
    const Extents inner = shadow.value_or(Extents{});
    return Extents{outer.left - inner.left, outer.right - inner.right, outer.top - inner.top,
                   outer.bottom - inner.bottom};
}

media::color::PixelRect extended(media::color::PixelRect rect, const Extents& extents) {
    const media::color::PixelRect seen{rect.x - extents.left, rect.y - extents.top,
                                       rect.width + extents.left + extents.right,
                                       rect.height + extents.top + extents.bottom};
    return seen.width > 0 && seen.height > 0 ? seen : rect;
}

/// The corner inside of the window's border, on the screen.
XcbOwned<xcb_translate_coordinates_reply_t> cornerOf(const X11Connection& connection,
                                                     xcb_window_t window) {
    return connection.await(
        xcb_translate_coordinates_reply,
        xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0));
}

} // namespace

std::optional<X11VisiblePart> visiblePart(const X11Connection& connection, xcb_window_t window,
                                          const X11Placement& topLevel) {
    const media::color::PixelRect whole{0, 0, topLevel.rect.width, topLevel.rect.height};
    const auto inner = placementOf(connection, window);
    const auto corner = cornerOf(connection, window);
    if (!topLevel.isShown || !inner || !inner->isShown || !corner)
        return {};
    X11VisiblePart part{.rect = whole,
                        .windowX = corner->dst_x - topLevel.rect.x,
                        .windowY = corner->dst_y - topLevel.rect.y};
    if (topLevel.window == window)
        part.windowX = part.windowY = topLevel.border; // whatever moves meanwhile
    const media::color::PixelRect inside{part.windowX, part.windowY,
                                         inner->rect.width - 2 * inner->border,
                                         inner->rect.height - 2 * inner->border};
    if (intersection(inside, whole) != inside)
        return {};
    if (const auto extents = visibleExtents(connection, window))
        part.rect = intersection(extended(inside, *extents), whole);
    return part;
}

std::optional<media::color::PixelRect> visibleRect(const X11Connection& connection,
                                                   xcb_window_t window) {
    const auto geometry =
        connection.await(xcb_get_geometry_reply, xcb_get_geometry(connection.get(), window));
    const auto corner = cornerOf(connection, window);
    if (!geometry || !corner)
        return {};
    const auto extents = visibleExtents(connection, window).value_or(Extents{});
    return extended({corner->dst_x, corner->dst_y, geometry->width, geometry->height}, extents);
}

X11VisiblePartEvents::X11VisiblePartEvents(const X11Connection& connection)
    : m_connection(connection)
    , m_frameExtents(makeAtom(connection, frameExtents))
    , m_toolkitExtents(makeAtom(connection, toolkitExtents)) {}

void X11VisiblePartEvents::watch(xcb_window_t window) const {
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection.get(), window, XCB_CW_EVENT_MASK, &mask);
}

bool X11VisiblePartEvents::isChange(const xcb_generic_event_t& event) const {
    switch (event.response_type & 0x7f) {
    case XCB_CONFIGURE_NOTIFY:
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY:
    case XCB_REPARENT_NOTIFY:
    case XCB_DESTROY_NOTIFY:
        return true;
    case XCB_PROPERTY_NOTIFY: {
        const auto atom = reinterpret_cast<const xcb_property_notify_event_t&>(event).atom;
        return atom == m_frameExtents || atom == m_toolkitExtents;
    }
    default:
        return false;
    }
}

} // namespace vantro::capture::x11
