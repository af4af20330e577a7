#include "capture/x11/X11WindowSource.h"

#include "capture/x11/X11Properties.h"
#include "capture/x11/X11Shape.h"
#include "capture/x11/X11WindowTree.h"

#include <algorithm>
#include <optional>
#include <ranges>

#include <xcb/composite.h>

namespace vantro::capture::x11 {
namespace {

// How long a window may take to paint what was covered until now. Toolkits need a few milliseconds;
// one that never paints must not keep the recording from starting.
constexpr base::HostDuration longestPainting = std::chrono::milliseconds(100);

constexpr const char* closedText = "the window was closed";

void watchStructure(const X11Connection& connection, xcb_window_t window) {
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection.get(), window, XCB_CW_EVENT_MASK, &mask);
}

/// Whether the server keeps the window's pixels apart already, as it does for a compositing
/// manager.
bool isRedirected(const X11Connection& connection, xcb_window_t window) {
    const auto pixmap = xcb_generate_id(connection.get());
    const XcbError error(xcb_request_check(
        connection.get(),
        xcb_composite_name_window_pixmap_checked(connection.get(), window, pixmap)));
    if (!error)
        xcb_free_pixmap(connection.get(), pixmap);
    return !error;
}

/// Whether something covers the window or it reaches beyond the screen.
bool isPartlyHidden(const X11Connection& connection, xcb_window_t topLevel) {
    const auto root = placementOf(connection, connection.root());
    const auto placement = placementOf(connection, topLevel);
    if (!root || !placement ||
        intersection(placement->rect, {0, 0, root->rect.width, root->rect.height}) !=
            placement->rect)
        return true;
    const auto siblings = childrenOf(connection, connection.root());
    auto above = siblings | std::views::reverse |
                 std::views::take_while([&](const auto& each) { return each.window != topLevel; });
    return std::ranges::any_of(above, [&](const auto& each) {
        return each.isShown && intersection(each.rect, placement->rect).width > 0;
    });
}

/// The part of a top-level window that is the chosen one with its frame: some window managers put
/// an invisible margin around it. Nothing while the window is not shown, or its frame does not hold
/// it, as when a window manager lets the frame shrink to an icon.
std::optional<media::color::PixelRect>
shownPart(const X11Connection& connection, xcb_window_t window, const X11Placement& topLevel) {
    const media::color::PixelRect whole{0, 0, topLevel.rect.width, topLevel.rect.height};
    const auto inner = placementOf(connection, window);
    if (!topLevel.isShown || !inner || !inner->isShown)
        return {};
    if (topLevel.window == window)
        return whole;
    const auto origin = connection.await(
        xcb_translate_coordinates_reply,
        xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0));
    if (!origin)
        return {};
    media::color::PixelRect part{origin->dst_x - topLevel.rect.x, origin->dst_y - topLevel.rect.y,
                                 inner->rect.width - 2 * inner->border,
                                 inner->rect.height - 2 * inner->border};
    if (intersection(part, whole) != part)
        return {};
    const auto extents = numbersProperty(connection, window, "_NET_FRAME_EXTENTS");
    if (extents.size() != 4)
        return whole;
    const auto side = [&](std::size_t index) { return static_cast<int>(extents[index]); };
    part.x -= side(0);
    part.y -= side(2);
    part.width += side(0) + side(1);
    part.height += side(2) + side(3);
    return intersection(part, whole);
}

} // namespace

std::expected<std::unique_ptr<X11WindowSource>, std::string>
X11WindowSource::create(const X11Connection& connection, xcb_window_t window) {
    if (!connection.hasExtension(xcb_composite_id))
        return std::unexpected(
            "single windows cannot be captured: the display lacks the extension Composite");
    connection.await(xcb_composite_query_version_reply,
                     xcb_composite_query_version(connection.get(), 0, 4));
    std::unique_ptr<X11WindowSource> source(new X11WindowSource(connection, window));
    if (!source->follow())
        return std::unexpected("No window selected");
    source->awaitFirstPainting();
    return source;
}

X11WindowSource::X11WindowSource(const X11Connection& connection, xcb_window_t window)
    : m_connection(connection), m_window(window) {
    watchStructure(connection, window);
}

X11WindowSource::~X11WindowSource() {
    releasePixmap();
}

void X11WindowSource::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
    case XCB_CONFIGURE_NOTIFY:
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY:
    case XCB_REPARENT_NOTIFY:
    case XCB_DESTROY_NOTIFY:
        m_isStale = true;
        return;
    default:
        m_isStale |= isShapeChange(m_connection, event);
        if (m_live)
            m_live->handle(event);
    }
}

bool X11WindowSource::hasChanges() const {
    return m_isStale || (m_pixmap != 0 && m_live->hasChanges());
}

std::expected<bool, std::string> X11WindowSource::update() {
    if (m_isStale && !follow())
        return std::unexpected(closedText);
    if (!m_live)
        return false; // never shown until now
    m_isStale = m_pixmap != 0 && !m_live->update(m_pixmap, m_crop.x, m_crop.y, m_changed);
    if (m_isStale)
        return false; // it changes at this moment
    blackenCutOut();
    return true;
}

/// Where a shaped window has no pixels, its pixmap holds what was beneath when it was made.
void X11WindowSource::blackenCutOut() {
    auto& image = m_live->image();
    for (const media::color::PixelRect& part : m_cutOut)
        for (int y = part.y; y < part.y + part.height; ++y)
            std::fill_n(image.pixels() + y * image.stride() + std::ptrdiff_t{4} * part.x,
                        std::size_t{4} * part.width, std::uint8_t{0});
}

pictures::PictureView X11WindowSource::picture() const {
    auto& image = m_live->image();
    return {.pixels = image.pixels(),
            .stride = image.stride(),
            .width = image.width(),
            .height = image.height()};
}

/// Finds out where the window's pixels are now. False when it has gone.
bool X11WindowSource::follow() {
    m_isStale = false;
    const xcb_window_t topLevel = topLevelOf(m_connection, m_window);
    if (topLevel == 0)
        return false;
    if (topLevel != m_topLevel)
        redirect(topLevel);
    const auto placement = placementOf(m_connection, topLevel);
    if (!placement)
        return false;
    const auto crop = shownPart(m_connection, m_window, *placement);
    if (!crop) {
        releasePixmap(); // the picture read from it stands
        return true;
    }
    // Each size and each showing has a pixmap of its own.
    releasePixmap();
    m_pixmap = xcb_generate_id(m_connection.get());
    xcb_composite_name_window_pixmap(m_connection.get(), topLevel, m_pixmap);
    const bool isSamePart = m_live && *crop == m_crop;
    m_crop = *crop;
    const media::color::PixelRect area{crop->x - placement->border, crop->y - placement->border,
                                       crop->width, crop->height};
    m_cutOut = cutOutParts(m_connection, topLevel, area);
    for (media::color::PixelRect& part : m_cutOut) {
        part.x -= area.x;
        part.y -= area.y;
    }
    if (isSamePart) {
        m_live->invalidate();
        return true;
    }
    m_live = std::make_unique<X11LivePicture>(m_connection, topLevel, area);
    m_changed = pictures::TileMap(crop->width, crop->height);
    return true;
}

void X11WindowSource::redirect(xcb_window_t topLevel) {
    m_live.reset(); // it watches the frame before
    m_topLevel = topLevel;
    watchStructure(m_connection, topLevel);
    watchShape(m_connection, topLevel, true);
    m_mustPaint = !isRedirected(m_connection, topLevel) && isPartlyHidden(m_connection, topLevel);
    xcb_composite_redirect_window(m_connection.get(), topLevel, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
}

void X11WindowSource::releasePixmap() {
    if (m_pixmap != 0)
        xcb_free_pixmap(m_connection.get(), m_pixmap);
    m_pixmap = 0;
}

/// What was covered has no pixels until the window has painted it, which the redirection asks it
/// to.
void X11WindowSource::awaitFirstPainting() {
    const base::HostTime limit = base::hostNow() + longestPainting;
    while (m_mustPaint && base::hostNow() < limit && !m_connection.isLost()) {
        constexpr int noWakeUp = -1;
        m_connection.wait(noWakeUp, limit);
        while (const XcbEvent event = m_connection.pollEvent())
            handle(*event);
    }
}

} // namespace vantro::capture::x11
