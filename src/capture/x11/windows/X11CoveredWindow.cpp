#include "capture/x11/windows/X11CoveredWindow.h"

#include "capture/x11/server/X11Shape.h"

#include <cstring>

#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/xfixes.h>

namespace vantro::capture::x11 {
namespace {

constexpr std::uint32_t allPlanes = ~0U;

bool nameContentsInto(const X11Connection& connection, xcb_window_t window, xcb_pixmap_t pixmap) {
    const XcbError error(xcb_request_check(
        connection.get(),
        xcb_composite_name_window_pixmap_checked(connection.get(), window, pixmap)));
    return !error;
}

xcb_rectangle_t toXcb(media::color::PixelRect rect) {
    return {static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(rect.y),
            static_cast<std::uint16_t>(rect.width), static_cast<std::uint16_t>(rect.height)};
}

/// Premultiplied color over what is there.
void blendRow(const std::uint8_t* source, std::uint8_t* destination, int width) {
    for (int x = 0; x < width; ++x, source += 4, destination += 4)
        for (int channel = 0; channel < 3; ++channel)
            destination[channel] = static_cast<std::uint8_t>(
                source[channel] + destination[channel] * (255 - source[3]) / 255);
}

} // namespace

X11CoveredWindow::X11CoveredWindow(const X11Connection& connection, const X11Placement& placement,
                                   std::span<const media::color::PixelRect> own)
    : m_connection(connection)
    , m_placement(placement)
    , m_damage(X11DamageSource::create(connection, placement.window, 0, 0)) {
    watchShape(m_connection, placement.window, true);
    keepOwnPictureOut(own);
    nameContents();
}

X11CoveredWindow::~X11CoveredWindow() {
    watchShape(m_connection, m_placement.window, false);
    xcb_free_pixmap(m_connection.get(), m_pixmap);
    xcb_composite_unredirect_window(m_connection.get(), m_placement.window,
                                    XCB_COMPOSITE_REDIRECT_AUTOMATIC);
}

/// When the server starts to keep a window apart, it begins with what the screen shows there, ours
/// included, and lets the window paint. Nobody draws while the server is grabbed, so what damage
/// tells then is the window's background, which the server paints itself.
void X11CoveredWindow::keepOwnPictureOut(std::span<const media::color::PixelRect> own) {
    auto* server = m_connection.get();
    xcb_grab_server(server);
    const auto pixmap = xcb_generate_id(server);
    const bool isApart = nameContentsInto(m_connection, m_placement.window, pixmap);
    xcb_composite_redirect_window(server, m_placement.window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    if (!isApart && m_damage && nameContentsInto(m_connection, m_placement.window, pixmap)) {
        std::vector<xcb_rectangle_t> hidden;
        for (media::color::PixelRect rect : own) {
            rect.x -= m_placement.rect.x + m_placement.border;
            rect.y -= m_placement.rect.y + m_placement.border;
            hidden.push_back(toXcb(rect));
        }
        const auto unknown = xcb_generate_id(server);
        const auto painted = xcb_generate_id(server);
        xcb_xfixes_create_region(server, unknown, static_cast<std::uint32_t>(hidden.size()),
                                 hidden.data());
        xcb_xfixes_create_region(server, painted, 0, nullptr);
        xcb_damage_subtract(server, m_damage->id(), XCB_NONE, painted);
        xcb_xfixes_subtract_region(server, unknown, painted, unknown);
        const auto context = xcb_generate_id(server);
        const std::uint32_t black = 0;
        xcb_create_gc(server, context, pixmap, XCB_GC_FOREGROUND, &black);
        xcb_xfixes_set_gc_clip_region(server, context, unknown,
                                      static_cast<std::int16_t>(m_placement.border),
                                      static_cast<std::int16_t>(m_placement.border));
        const auto whole = toXcb({0, 0, m_placement.rect.width, m_placement.rect.height});
        xcb_poly_fill_rectangle(server, pixmap, context, 1, &whole);
        xcb_free_gc(server, context);
        xcb_xfixes_destroy_region(server, unknown);
        xcb_xfixes_destroy_region(server, painted);
        m_mustPaint = true;
    }
    xcb_free_pixmap(server, pixmap);
    xcb_ungrab_server(server);
    xcb_flush(server);
}

void X11CoveredWindow::nameContents() {
    if (m_pixmap != 0)
        xcb_free_pixmap(m_connection.get(), m_pixmap);
    m_pixmap = xcb_generate_id(m_connection.get());
    xcb_composite_name_window_pixmap(m_connection.get(), m_placement.window, m_pixmap);
    const auto shown = shownParts(m_connection, m_placement.window);
    m_shape = shown.value_or(std::vector<media::color::PixelRect>());
    for (media::color::PixelRect& part : m_shape) {
        part.x += m_placement.border;
        part.y += m_placement.border;
    }
    if (!shown)
        m_shape = {{0, 0, m_placement.rect.width, m_placement.rect.height}};
}

void X11CoveredWindow::moveTo(const X11Placement& placement) {
    m_placement = placement;
    nameContents(); // a new size has new pixels, and the shape may be new
}

void X11CoveredWindow::handle(const xcb_generic_event_t& event) {
    if (m_damage)
        m_damage->handle(event);
}

void X11CoveredWindow::changesSeen() {
    if (!m_damage)
        return;
    pictures::TileMap drawn(m_placement.rect.width, m_placement.rect.height);
    m_damage->collect(drawn);
    m_mustPaint &= drawn.isEmpty();
}

bool X11CoveredWindow::covers(media::color::PixelRect rect) const {
    return m_shape.size() == 1 && m_placement.depth != 32 &&
           intersection(m_placement.rect, rect) == rect;
}

void X11CoveredWindow::draw(media::color::PixelRect rect, std::uint8_t* picture,
                            bool isBlended) const {
    const media::color::PixelRect own{rect.x - m_placement.rect.x, rect.y - m_placement.rect.y,
                                      rect.width, rect.height};
    for (const media::color::PixelRect& part : m_shape) {
        const media::color::PixelRect shown = intersection(
            intersection(part, own), {0, 0, m_placement.rect.width, m_placement.rect.height});
        if (shown.width == 0)
            continue;
        const auto reply = m_connection.await(
            xcb_get_image_reply,
            xcb_get_image(m_connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_pixmap, toXcb(shown).x,
                          toXcb(shown).y, toXcb(shown).width, toXcb(shown).height, allPlanes));
        const auto rowSize = static_cast<std::size_t>(shown.width) * 4;
        if (!reply || static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) <
                          rowSize * static_cast<std::size_t>(shown.height))
            continue; // it goes or shrinks at this moment, which an event tells of
        for (int y = 0; y < shown.height; ++y) {
            const auto* source =
                xcb_get_image_data(reply.get()) + static_cast<std::size_t>(y) * rowSize;
            auto* row = picture +
                        4 * (std::ptrdiff_t{shown.y - own.y + y} * rect.width + (shown.x - own.x));
            if (isBlended && m_placement.depth == 32)
                blendRow(source, row, shown.width);
            else
                std::memcpy(row, source, rowSize);
        }
    }
}

} // namespace vantro::capture::x11
