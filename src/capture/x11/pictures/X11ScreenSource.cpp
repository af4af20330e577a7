#include "capture/x11/pictures/X11ScreenSource.h"

#include "base/Log.h"
#include "capture/x11/windows/X11WindowTree.h"

#include <algorithm>

#include <xcb/composite.h>
#include <xcb/randr.h>

namespace vantro::capture::x11 {
namespace {

// How long windows may take to paint what ours have hidden until now. Shorter shows them in black
// for a moment; longer holds the recording up when one does not answer.
constexpr base::HostDuration longestPainting = std::chrono::milliseconds(100);

// Our windows are looked for again after each reading of the screen. More attempts than this in one
// frame mean that they move all the time; then the frame is left out.
constexpr int mostAttempts = 8;

} // namespace

X11ScreenSource::X11ScreenSource(std::unique_ptr<X11Connection> owned, Place place,
                                 const X11Geometry& geometry, X11OwnWindows own)
    : X11PictureSource(std::move(owned)), m_place(place) {
    const X11Connection& connection = this->connection();
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_EVENT_MASK, &mask);
    if (connection.hasExtension(xcb_randr_id)) {
        m_firstRandrEvent = connection.firstEvent(xcb_randr_id);
        xcb_randr_select_input(connection.get(), connection.root(),
                               XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    }
    for (const X11Monitor& monitor : geometry.monitors)
        if (intersection(monitor.rect, place.area).width > 0)
            m_monitors.push_back(monitor.id);
    if (const auto* monitor = geometry.find(place.monitor))
        m_monitorRect = monitor->rect;
    if (connection.hasExtension(xcb_composite_id) && connection.hasExtension(xcb_xfixes_id))
        m_underlay.emplace(connection, place.area, std::move(own));
    else
        base::logWarning(
            "The display lacks the extension Composite: own windows appear in recordings");
    show(place.area);
    if (m_underlay)
        restack(*m_underlay);
}

void X11ScreenSource::handle(const xcb_generic_event_t& event) {
    const int type = event.response_type & 0x7f;
    const bool isRandr =
        m_firstRandrEvent != 0 && (type == m_firstRandrEvent + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
                                   type == m_firstRandrEvent + XCB_RANDR_NOTIFY);
    const bool isScreen =
        type == XCB_CONFIGURE_NOTIFY &&
        reinterpret_cast<const xcb_configure_notify_event_t&>(event).window == connection().root();
    m_isGeometryStale |= isRandr || isScreen;
    m_live->handle(event);
    if (m_underlay)
        m_underlay->handle(event);
}

bool X11ScreenSource::hasChanges() const {
    return m_isGeometryStale || m_live->hasChanges() || (m_underlay && m_underlay->hasChanges());
}

std::expected<bool, std::string> X11ScreenSource::fetch() {
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        if (m_isGeometryStale)
            if (const auto followed = follow(); !followed)
                return std::unexpected(followed.error());
        if (m_underlay && m_underlay->isStale())
            restack(*m_underlay);
        const bool isRead = read();
        drainEvents();
        if (!isRead && !m_isGeometryStale)
            return std::unexpected("the screen cannot be read any more");
        if (isRead && (!m_underlay || isClean(*m_underlay)) && !m_isGeometryStale) {
            if (m_underlay)
                m_underlay->paint(m_live->image(), m_changed);
            return true;
        }
    }
    m_live->invalidate();
    return false;
}

pictures::PictureView X11ScreenSource::picture() const {
    auto& image = m_live->image();
    return {.pixels = image.pixels(),
            .stride = image.stride(),
            .width = image.width(),
            .height = image.height()};
}

bool X11ScreenSource::read() {
    if (m_underlay)
        m_underlay->beginReading();
    return m_live->update(connection().root(), m_area.x, m_area.y, m_changed,
                          m_underlay ? m_underlay->hidden()
                                     : std::span<const media::color::PixelRect>());
}

/// Whether none of our windows came into the picture while it was read.
bool X11ScreenSource::isClean(X11Underlay& underlay) {
    if (underlay.isStale() && restack(underlay))
        return false;
    drainEvents(); // a window may have gone while it was asked whose it is
    if (underlay.mayHaveShown())
        m_live->invalidate();
    return !underlay.mayHaveShown();
}

/// True when the picture is to be read again.
bool X11ScreenSource::restack(X11Underlay& underlay) {
    if (!underlay.restack())
        return false;
    m_live->invalidate();
    const base::HostTime limit = base::hostNow() + longestPainting;
    while (underlay.awaitsPainting() && base::hostNow() < limit && !connection().isLost()) {
        constexpr int noWakeUp = -1;
        connection().wait(noWakeUp, limit);
        drainEvents();
    }
    underlay.awaitNoLonger();
    return true;
}

/// Goes with the monitor. The error tells that there is nothing to show any more.
std::expected<void, std::string> X11ScreenSource::follow() {
    m_isGeometryStale = false;
    const X11Geometry geometry = queryGeometry(connection());
    const media::color::PixelRect area = areaNow(geometry);
    const bool isMonitorGone =
        !m_monitors.empty() &&
        std::ranges::none_of(m_monitors, [&](auto id) { return geometry.find(id) != nullptr; });
    const bool isOutside = area.width == 0;
    if (isMonitorGone || (isOutside && m_place.monitor != 0))
        return std::unexpected("the display was disconnected");
    if (isOutside)
        return std::unexpected("the area lies outside of the screen");
    if (area != m_area)
        show(area);
    return {};
}

media::color::PixelRect X11ScreenSource::areaNow(const X11Geometry& geometry) const {
    const auto root = placementOf(connection(), connection().root());
    if (!root)
        return m_area;
    media::color::PixelRect area = m_place.area;
    if (const auto* monitor = geometry.find(m_place.monitor)) {
        const bool isSameSize = monitor->rect.width == m_monitorRect.width &&
                                monitor->rect.height == m_monitorRect.height;
        area = monitor->rect;
        if (isSameSize) { // an odd row or column is left out as before
            area.width = m_place.area.width;
            area.height = m_place.area.height;
        }
    }
    return intersection(area, {0, 0, root->rect.width, root->rect.height});
}

void X11ScreenSource::show(media::color::PixelRect area) {
    m_area = area;
    m_live = std::make_unique<X11LivePicture>(connection(), connection().root(), area);
    m_changed = pictures::TileMap(area.width, area.height);
    if (m_underlay)
        m_underlay->setArea(area);
}

} // namespace vantro::capture::x11
