#include "capture/x11/pictures/X11WindowSource.h"

#include "capture/x11/server/X11Shape.h"
#include "capture/x11/windows/X11WindowTree.h"

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

} // namespace

std::expected<std::unique_ptr<X11PictureSource>, std::string>
X11WindowSource::create(std::unique_ptr<X11Connection> connection, xcb_window_t window) {
    if (!connection->hasExtension(xcb_composite_id))
        return std::unexpected(
            "single windows cannot be captured: the display lacks the extension Composite");
    connection->await(xcb_composite_query_version_reply,
                      xcb_composite_query_version(connection->get(), 0, 4));
    std::unique_ptr<X11WindowSource> source(new X11WindowSource(std::move(connection), window));
    if (!source->follow())
        return std::unexpected("No window selected");
    source->awaitFirstPainting();
    return source;
}

X11WindowSource::X11WindowSource(std::unique_ptr<X11Connection> connection, xcb_window_t window)
    : X11PictureSource(std::move(connection)), m_events(this->connection()), m_window(window) {
    m_events.watch(window);
}

X11WindowSource::~X11WindowSource() {
    releasePixmap();
}

void X11WindowSource::handle(const xcb_generic_event_t& event) {
    if (m_events.isChange(event) || isShapeChange(connection(), event))
        m_isStale = true;
    else if (m_live)
        m_live->handle(event);
}

bool X11WindowSource::hasChanges() const {
    return m_isStale || (m_pixmap != 0 && m_live->hasChanges());
}

std::expected<bool, std::string> X11WindowSource::fetch() {
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
    const xcb_window_t topLevel = topLevelOf(connection(), m_window);
    if (topLevel == 0)
        return false;
    if (topLevel != m_topLevel)
        redirect(topLevel);
    const auto placement = placementOf(connection(), topLevel);
    if (!placement)
        return false;
    const auto part = visiblePart(connection(), m_window, *placement);
    if (!part) {
        releasePixmap(); // the picture read from it stands
        return true;
    }
    // Each size and each showing has a pixmap of its own.
    releasePixmap();
    m_pixmap = xcb_generate_id(connection().get());
    xcb_composite_name_window_pixmap(connection().get(), topLevel, m_pixmap);
    const bool isSamePart = m_live && part->rect == m_crop;
    m_crop = part->rect;
    const media::color::PixelRect area{m_crop.x - placement->border, m_crop.y - placement->border,
                                       m_crop.width, m_crop.height};
    m_cutOut = cutOutParts(connection(), topLevel, area);
    for (media::color::PixelRect& cutOut : m_cutOut) {
        cutOut.x -= area.x;
        cutOut.y -= area.y;
    }
    if (isSamePart) {
        m_live->invalidate();
        return true;
    }
    m_live = std::make_unique<X11LivePicture>(connection(), topLevel, area);
    m_changed = pictures::TileMap(m_crop.width, m_crop.height);
    return true;
}

void X11WindowSource::redirect(xcb_window_t topLevel) {
    m_live.reset(); // it watches the frame before
    m_topLevel = topLevel;
    m_events.watch(topLevel);
    watchShape(connection(), topLevel, true);
    m_mustPaint = !isRedirected(connection(), topLevel) && isPartlyHidden(connection(), topLevel);
    xcb_composite_redirect_window(connection().get(), topLevel, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
}

void X11WindowSource::releasePixmap() {
    if (m_pixmap != 0)
        xcb_free_pixmap(connection().get(), m_pixmap);
    m_pixmap = 0;
}

/// What was covered has no pixels until the window has painted it, which the redirection asks it
/// to.
void X11WindowSource::awaitFirstPainting() {
    const base::HostTime limit = base::hostNow() + longestPainting;
    while (m_mustPaint && base::hostNow() < limit && !connection().isLost()) {
        constexpr int noWakeUp = -1;
        connection().wait(noWakeUp, limit);
        drainEvents();
    }
}

} // namespace vantro::capture::x11
