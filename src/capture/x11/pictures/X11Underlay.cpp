#include "capture/x11/pictures/X11Underlay.h"

#include "capture/x11/server/X11Properties.h"
#include "capture/x11/server/X11Shape.h"

#include <algorithm>
#include <cstring>
#include <ranges>
#include <string_view>

#include <xcb/composite.h>
#include <xcb/xfixes.h>

namespace vantro::capture::x11 {
namespace {

/// A compositing manager owns this selection for as long as it runs.
xcb_atom_t watchCompositingManager(const X11Connection& connection) {
    constexpr std::string_view name = "_NET_WM_CM_S0";
    const xcb_atom_t selection = makeAtom(connection, name);
    xcb_discard_reply(connection.get(), xcb_xfixes_query_version(connection.get(), 5, 0).sequence);
    xcb_xfixes_select_selection_input(connection.get(), connection.root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    return selection;
}

bool hasOwner(const X11Connection& connection, xcb_atom_t selection) {
    const auto owner = connection.await(xcb_get_selection_owner_reply,
                                        xcb_get_selection_owner(connection.get(), selection));
    return owner && owner->owner != XCB_NONE;
}

bool isSelectionChange(const X11Connection& connection, const xcb_generic_event_t& event) {
    return (event.response_type & 0x7f) ==
           connection.firstEvent(xcb_xfixes_id) + XCB_XFIXES_SELECTION_NOTIFY;
}

bool touchesAny(media::color::PixelRect rect, std::span<const media::color::PixelRect> parts) {
    return std::ranges::any_of(
        parts, [&](media::color::PixelRect part) { return intersection(rect, part).width > 0; });
}

} // namespace

X11Underlay::X11Underlay(const X11Connection& connection, media::color::PixelRect area,
                         X11OwnWindows own)
    : m_connection(connection)
    , m_area(area)
    , m_own(std::move(own))
    , m_compositingManager(watchCompositingManager(connection)) {
    connection.await(xcb_composite_query_version_reply,
                     xcb_composite_query_version(connection.get(), 0, 4));
}

void X11Underlay::setArea(media::color::PixelRect area) {
    m_area = area;
    m_hidden.clear();
    m_patches.clear();
    m_background.reset();
    m_isStale = true;
}

void X11Underlay::handle(const xcb_generic_event_t& event) {
    followWindow(event);
    switch (event.response_type & 0x7f) {
    case XCB_CREATE_NOTIFY:
    case XCB_DESTROY_NOTIFY:
    case XCB_MAP_NOTIFY:
    case XCB_REPARENT_NOTIFY:
        m_own.forget();
        [[fallthrough]];
    case XCB_UNMAP_NOTIFY:
    case XCB_CONFIGURE_NOTIFY:
    case XCB_GRAVITY_NOTIFY:
    case XCB_CIRCULATE_NOTIFY:
        m_isStale = true;
        return;
    default:
        m_isStale |= isShapeChange(m_connection, event) || isSelectionChange(m_connection, event);
        for (const auto& covered : m_covered)
            covered->handle(event);
    }
}

void X11Underlay::beginReading() {
    m_come.clear();
    m_mayHaveShown = false;
}

void X11Underlay::followWindow(const xcb_generic_event_t& event) {
    const auto hasCome = [this](xcb_window_t window) {
        return std::ranges::find(m_come, window) != m_come.end();
    };
    switch (event.response_type & 0x7f) {
    case XCB_MAP_NOTIFY:
        m_come.push_back(reinterpret_cast<const xcb_map_notify_event_t&>(event).window);
        return;
    case XCB_UNMAP_NOTIFY:
        m_mayHaveShown |= hasCome(reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window);
        return;
    case XCB_CONFIGURE_NOTIFY: {
        const auto window = reinterpret_cast<const xcb_configure_notify_event_t&>(event).window;
        m_mayHaveShown |= std::ranges::find(m_ours, window) != m_ours.end();
        return;
    }
    default:
        return;
    }
}

bool X11Underlay::hasChanges() const {
    return isStale() || std::ranges::any_of(m_covered, &X11CoveredWindow::hasChanges);
}

bool X11Underlay::isStale() const {
    return m_isStale || m_places.hasExpired(base::hostNow());
}

bool X11Underlay::restack() {
    m_isStale = false;
    m_isComposited = hasOwner(m_connection, m_compositingManager);
    const int reach = X11OwnPlaces::reach(m_isComposited);
    auto windows = childrenOf(m_connection, m_connection.root());
    std::erase_if(windows, [&](const X11Placement& each) {
        return !each.isShown || intersection(grown(each.rect, reach), m_area).width == 0;
    });
    const auto others = std::ranges::stable_partition(
        windows, [this](const X11Placement& each) { return m_own.isOwn(each.window); });
    m_ours.clear();
    std::ranges::transform(windows.begin(), others.begin(), std::back_inserter(m_ours),
                           &X11Placement::window);
    std::vector<media::color::PixelRect> hidden;
    for (const media::color::PixelRect& place :
         m_places.update({windows.begin(), others.begin()}, m_isComposited, base::hostNow())) {
        const media::color::PixelRect shown = intersection(place, m_area);
        if (shown.width > 0)
            hidden.push_back({shown.x - m_area.x, shown.y - m_area.y, shown.width, shown.height});
    }
    const bool isMoved = hidden != m_hidden;
    if (isMoved)
        hide(std::move(hidden));
    updateCovered({others.begin(), others.end()});
    return isMoved;
}

void X11Underlay::hide(std::vector<media::color::PixelRect> places) {
    m_hidden = std::move(places);
    m_patches.clear();
    for (const media::color::PixelRect& rect : m_hidden)
        m_patches.push_back(
            {.rect = rect,
             .pixels = std::vector<std::uint8_t>(std::size_t{4} * rect.width * rect.height)});
    if (m_hidden.empty())
        m_background.reset();
    else if (!m_background)
        readBackground();
}

/// Keeps those windows apart that share pixels with ours, and no others.
void X11Underlay::updateCovered(const std::vector<X11Placement>& others) {
    std::vector<media::color::PixelRect> own;
    std::ranges::transform(m_hidden, std::back_inserter(own),
                           [this](media::color::PixelRect rect) { return onScreen(rect); });
    std::vector<std::unique_ptr<X11CoveredWindow>> kept;
    for (const X11Placement& placement : others) {
        if (!touchesAny(placement.rect, own))
            continue;
        const auto known = std::ranges::find_if(m_covered, [&](const auto& each) {
            return each && each->placement().window == placement.window;
        });
        if (known == m_covered.end()) {
            kept.push_back(std::make_unique<X11CoveredWindow>(m_connection, placement, own));
        } else {
            kept.push_back(std::move(*known));
            kept.back()->moveTo(placement);
        }
    }
    m_covered = std::move(kept);
    for (Patch& patch : m_patches)
        patch.isStale = true;
}

/// The root's own pixels cannot be read where windows cover them. A window of its background, which
/// the server paints but does not show, has the same; nobody sees it come and go.
void X11Underlay::readBackground() {
    auto* server = m_connection.get();
    m_background = std::make_unique<X11Image>(m_connection, m_area.width, m_area.height);
    const auto window = xcb_generate_id(server);
    const auto pixmap = xcb_generate_id(server);
    const std::uint32_t values[] = {XCB_BACK_PIXMAP_PARENT_RELATIVE, 1}; // override-redirect
    xcb_grab_server(server);
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window, m_connection.root(),
                      static_cast<std::int16_t>(m_area.x), static_cast<std::int16_t>(m_area.y),
                      static_cast<std::uint16_t>(m_area.width),
                      static_cast<std::uint16_t>(m_area.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_composite_redirect_window(server, window, XCB_COMPOSITE_REDIRECT_MANUAL);
    const std::uint32_t below = XCB_STACK_MODE_BELOW;
    xcb_configure_window(server, window, XCB_CONFIG_WINDOW_STACK_MODE, &below);
    xcb_map_window(server, window);
    xcb_composite_name_window_pixmap(server, window, pixmap);
    pictures::TileMap all(m_area.width, m_area.height);
    all.addAll();
    m_background->fetch(pixmap, 0, 0, all);
    xcb_free_pixmap(server, pixmap);
    xcb_destroy_window(server, window);
    xcb_ungrab_server(server);
    xcb_flush(server);
}

bool X11Underlay::awaitsPainting() {
    return std::ranges::any_of(m_covered, [](const auto& covered) {
        if (covered->mustPaint() && covered->hasChanges())
            covered->changesSeen();
        return covered->mustPaint();
    });
}

void X11Underlay::awaitNoLonger() {
    for (const auto& covered : m_covered)
        covered->awaitNoLonger();
}

void X11Underlay::paint(X11Image& picture, pictures::TileMap& changed) {
    for (const auto& covered : m_covered) {
        if (!covered->hasChanges())
            continue;
        covered->changesSeen();
        for (Patch& patch : m_patches)
            patch.isStale |=
                intersection(onScreen(patch.rect), covered->placement().rect).width > 0;
    }
    for (Patch& patch : m_patches) {
        if (patch.isStale) {
            compose(patch);
            changed.add(patch.rect);
            patch.isStale = false;
        }
        const auto rowSize = std::size_t{4} * patch.rect.width;
        for (int y = 0; y < patch.rect.height; ++y)
            std::memcpy(picture.pixels() + (patch.rect.y + y) * picture.stride() +
                            std::ptrdiff_t{4} * patch.rect.x,
                        patch.pixels.data() + static_cast<std::size_t>(y) * rowSize, rowSize);
    }
}

void X11Underlay::compose(Patch& patch) const {
    const media::color::PixelRect rect = onScreen(patch.rect);
    auto lowest = std::ranges::find_if(m_covered.rbegin(), m_covered.rend(),
                                       [&](const auto& each) { return each->covers(rect); });
    const auto first = lowest == m_covered.rend() ? m_covered.begin() : lowest.base() - 1;
    const auto rowSize = std::size_t{4} * rect.width;
    if (lowest == m_covered.rend())
        for (int y = 0; y < rect.height; ++y)
            std::memcpy(patch.pixels.data() + static_cast<std::size_t>(y) * rowSize,
                        m_background->pixels() + (patch.rect.y + y) * m_background->stride() +
                            std::ptrdiff_t{4} * patch.rect.x,
                        rowSize);
    for (auto covered = first; covered != m_covered.end(); ++covered)
        (*covered)->draw(rect, patch.pixels.data(), m_isComposited);
}

media::color::PixelRect X11Underlay::onScreen(media::color::PixelRect rect) const {
    return {rect.x + m_area.x, rect.y + m_area.y, rect.width, rect.height};
}

} // namespace vantro::capture::x11
