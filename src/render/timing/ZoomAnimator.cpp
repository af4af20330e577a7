#include "render/timing/ZoomAnimator.h"

#include <algorithm>
#include <cmath>

namespace vantro::render {
namespace {

// The lead-in: a quarter of it at full frame, the rest zooming in.
constexpr double delayShare = 0.25;
constexpr double zoomInShare = 0.75;
// The zoom-out takes most of what is left after the last click, but no more than this many seconds,
// beyond which it drags.
constexpr double zoomOutShare = 0.9;
constexpr double longestZoomOut = 1.125;

double easeInOutCubic(double p) {
    if (p < 0.5)
        return p * (p * (p * 4));
    const auto f = 2 * p - 2;
    return f * (f * (f * 0.5)) + 1;
}

double easeOutCubic(double q) {
    const auto g = q - 1;
    return g * g * g + 1;
}

} // namespace

ZoomAnimator::ZoomAnimator(std::vector<model::ClickEvent> clicks, model::Size videoSize)
    : m_clicks(std::move(clicks)), m_videoSize(videoSize) {
    std::erase_if(m_clicks, [](const auto& click) { return std::isnan(click.timestamp); });
    std::ranges::stable_sort(m_clicks, {}, &model::ClickEvent::timestamp);
    for (std::size_t click = 0; click < m_clicks.size(); ++click)
        if (!model::isSilenced(m_clicks[click]))
            m_zooms.push_back(zoomOf(click));
}

ZoomAnimator::Zoom ZoomAnimator::zoomOf(std::size_t click) const {
    const auto& event = m_clicks[click];
    const auto after = [&](double time) {
        return static_cast<std::size_t>(
            std::ranges::upper_bound(m_clicks, time, {}, &model::ClickEvent::timestamp) -
            m_clicks.begin());
    };
    Zoom zoom;
    zoom.click = click;
    zoom.firstStop = zoom.endStop = after(event.timestamp);
    if (event.endOffset > 0)
        zoom.endStop = after(event.timestamp + event.endOffset);
    zoom.level = event.zoomLevel;
    zoom.start = event.timestamp - event.startOffset;
    zoom.delay = event.startOffset * delayShare;
    zoom.zoomIn = event.startOffset * zoomInShare;
    const double lastTime =
        zoom.endStop > zoom.firstStop ? m_clicks[zoom.endStop - 1].timestamp : event.timestamp;
    const double span = lastTime - event.timestamp;
    const double tail = event.endOffset - span;
    zoom.zoomOut = std::min(tail * zoomOutShare, longestZoomOut);
    zoom.hold = span + tail - zoom.zoomOut;
    return zoom;
}

/// 1 outside the zoom. NaN where an absurd click makes a division by zero of it.
double ZoomAnimator::Zoom::scaleAt(double t) const {
    const auto local = t - start;
    if (local < 0 || local > delay + zoomIn + hold + zoomOut || local < delay)
        return 1;
    const auto u = local - delay;
    if (u < zoomIn)
        return 1 + (level - 1) * easeInOutCubic(u / zoomIn);
    if (u < zoomIn + hold)
        return level;
    return level + (1 - level) * easeOutCubic((u - zoomIn - hold) / zoomOut);
}

ZoomKeyframe ZoomAnimator::keyframe(double t) const {
    const Zoom* winner = nullptr;
    double best = 1;
    for (const Zoom& zoom : m_zooms) {
        const double scale = zoom.scaleAt(t);
        if (best < scale) { // on a tie the earlier click has the camera
            best = scale;
            winner = &zoom;
        }
    }
    if (winner == nullptr)
        return {
            .scale = 1, .centerX = m_videoSize.width * 0.5, .centerY = m_videoSize.height * 0.5};
    const auto position = center(*winner, t, best);
    return {.scale = best, .centerX = position.x, .centerY = position.y};
}

/// Keeps the magnified view wholly inside the frame.
model::Point ZoomAnimator::clamped(std::size_t click, double scale) const {
    const auto halfWidth = m_videoSize.width / scale * 0.5;
    const auto halfHeight = m_videoSize.height / scale * 0.5;
    return {.x = std::max(halfWidth, std::min(m_clicks[click].x, m_videoSize.width - halfWidth)),
            .y =
                std::max(halfHeight, std::min(m_clicks[click].y, m_videoSize.height - halfHeight))};
}

/// The way leads from the click along its stops. Before the click and after the last stop the
/// camera stands at the latter.
model::Point ZoomAnimator::center(const Zoom& zoom, double t, double scale) const {
    if (zoom.firstStop == zoom.endStop)
        return clamped(zoom.click, scale);
    const std::size_t last = zoom.endStop - 1;
    const double begin = m_clicks[zoom.click].timestamp;
    if (t < begin || t > m_clicks[last].timestamp)
        return clamped(last, scale);
    const auto stops =
        std::ranges::subrange(m_clicks.begin() + static_cast<std::ptrdiff_t>(zoom.firstStop),
                              m_clicks.begin() + static_cast<std::ptrdiff_t>(zoom.endStop));
    const auto found = std::ranges::lower_bound(stops, t, {}, &model::ClickEvent::timestamp);
    const auto next = static_cast<std::size_t>(found - m_clicks.begin());
    const std::size_t previous = next == zoom.firstStop ? zoom.click : next - 1;
    const auto from = clamped(previous, scale);
    const auto to = clamped(next, scale);
    const double since = t - m_clicks[previous].timestamp;
    const double length = m_clicks[next].timestamp - m_clicks[previous].timestamp;
    const double progress = length <= 0 ? 1.0 : easeInOutCubic(since / length);
    return {.x = from.x + (to.x - from.x) * progress, .y = from.y + (to.y - from.y) * progress};
}

} // namespace vantro::render
