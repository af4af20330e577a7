#include "render/timing/ZoomAnimator.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <span>

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

/// Whether `candidate` falls into the hold of `click`'s zoom.
bool isIntermediate(const model::ClickEvent& candidate, const model::ClickEvent& click) {
    return candidate.id != click.id && click.timestamp < candidate.timestamp &&
           candidate.timestamp <= click.timestamp + click.endOffset;
}

bool isInOrderOfTime(const std::vector<model::ClickEvent>& clicks) {
    return std::ranges::adjacent_find(clicks, [](const auto& a, const auto& b) {
               return !(a.timestamp <= b.timestamp);
           }) == clicks.end();
}

/// The positions of all clicks for which `key(position)` is a number, in order of that number.
template <typename Key>
std::vector<std::size_t> positionsSortedBy(std::size_t count, Key key) {
    std::vector<std::size_t> positions(count);
    std::iota(positions.begin(), positions.end(), std::size_t{0});
    std::erase_if(positions, [&](auto position) { return std::isnan(key(position)); });
    std::ranges::stable_sort(positions, {}, key);
    return positions;
}

/// The greatest of the positions that hold another identifier. Only lists in which identifiers are
/// repeated come to this.
std::optional<std::size_t> lastOfOtherId(std::span<const std::size_t> positions,
                                         const std::vector<model::ClickEvent>& clicks,
                                         const model::Uuid& id) {
    std::optional<std::size_t> found;
    for (const auto position : positions) {
        if (clicks[position].id != id && (!found || *found < position))
            found = position;
    }
    return found;
}

} // namespace

ZoomAnimator::ZoomAnimator(std::vector<model::ClickEvent> clicks, model::Size videoSize)
    : m_clicks(std::move(clicks))
    , m_videoSize(videoSize)
    , m_zooms(m_clicks.size())
    , m_lastIntermediates(m_clicks.size())
    , m_isOrderly(isInOrderOfTime(m_clicks)) {
    findIntermediates();
    shareChains();
    planZooms();
    indexZooms();
}

/// Intermediates are a range in the order of time; of these the last in the list is the one at the
/// greatest position.
void ZoomAnimator::findIntermediates() {
    const auto timeAt = [&](std::size_t position) { return m_clicks[position].timestamp; };
    const auto byTime = positionsSortedBy(m_clicks.size(), timeAt);
    const MaxTree<std::size_t> greatest(byTime);
    for (std::size_t i = 0; i < m_clicks.size(); ++i) {
        const auto& click = m_clicks[i];
        const auto limit = click.timestamp + click.endOffset;
        if (!(click.timestamp < limit))
            continue;
        const auto first = std::ranges::upper_bound(byTime, click.timestamp, {}, timeAt);
        const auto last = std::ranges::upper_bound(first, byTime.end(), limit, {}, timeAt);
        if (first == last)
            continue;
        const auto found = greatest.max(static_cast<std::size_t>(first - byTime.begin()),
                                        static_cast<std::size_t>(last - byTime.begin()));
        if (m_clicks[found].id != click.id)
            m_lastIntermediates[i] = found;
        else
            m_lastIntermediates[i] = lastOfOtherId({first, last}, m_clicks, click.id);
    }
}

/// Intermediates belong to an identifier. Where clicks share one, the last of them that has any
/// gives its own to all.
void ZoomAnimator::shareChains() {
    std::vector<std::size_t> byId(m_clicks.size());
    std::iota(byId.begin(), byId.end(), std::size_t{0});
    const auto idAt = [&](std::size_t position) -> const model::Uuid& {
        return m_clicks[position].id;
    };
    std::ranges::stable_sort(byId, {}, idAt);
    for (auto group = byId.begin(); group != byId.end();) {
        const auto end = std::find_if(
            group, byId.end(), [&](auto position) { return idAt(position) != idAt(*group); });
        std::optional<std::size_t> owner;
        for (auto member = group; member != end; ++member)
            owner = m_lastIntermediates[*member] ? *member : owner;
        for (auto member = group; member != end; ++member)
            m_zooms[*member].chain = owner;
        m_isOrderly = m_isOrderly && end - group == 1;
        group = end;
    }
}

void ZoomAnimator::planZooms() {
    for (std::size_t i = 0; i < m_clicks.size(); ++i) {
        const auto& click = m_clicks[i];
        auto& zoom = m_zooms[i];
        zoom.start = click.timestamp - click.startOffset;
        zoom.delay = click.startOffset * delayShare;
        zoom.zoomIn = click.startOffset * zoomInShare;
        if (zoom.chain) {
            const auto& last = m_clicks[*m_lastIntermediates[*zoom.chain]];
            const auto span = last.timestamp - click.timestamp;
            const auto tail = click.endOffset - span;
            zoom.zoomOut = std::min(tail * zoomOutShare, longestZoomOut);
            zoom.hold = span + tail - zoom.zoomOut;
        } else {
            zoom.zoomOut = std::min(click.endOffset * zoomOutShare, longestZoomOut);
            zoom.hold = click.endOffset - zoom.zoomOut;
        }
    }
}

void ZoomAnimator::indexZooms() {
    const auto startAt = [&](std::size_t position) { return m_zooms[position].start; };
    // A zoom whose start is not a number never has a scale that is one.
    m_byStart = positionsSortedBy(m_zooms.size(), startAt);
    std::vector<double> ends;
    for (const auto position : m_byStart) {
        m_starts.push_back(m_zooms[position].start);
        ends.push_back(m_zooms[position].latestEnd());
    }
    m_ends = MaxTree<double>(ends);
}

/// No zoom is under way after this; exactly when it ends is for scaleAt to say.
double ZoomAnimator::Zoom::latestEnd() const {
    const auto length = delay + zoomIn + hold + zoomOut;
    constexpr double roundingMargin = 1e-9;
    const auto end = start + length + (std::abs(start) + std::abs(length) + 1) * roundingMargin;
    return std::isnan(end) ? std::numeric_limits<double>::infinity() : end;
}

/// 1 outside the zoom. NaN where an absurd click makes a division by zero of it.
double ZoomAnimator::Zoom::scaleAt(double t, double zoomLevel) const {
    const auto local = t - start;
    if (local < 0 || local > delay + zoomIn + hold + zoomOut || local < delay)
        return 1;
    const auto u = local - delay;
    if (u < zoomIn)
        return 1 + (zoomLevel - 1) * easeInOutCubic(u / zoomIn);
    if (u < zoomIn + hold)
        return zoomLevel;
    return zoomLevel + (1 - zoomLevel) * easeOutCubic((u - zoomIn - hold) / zoomOut);
}

ZoomKeyframe ZoomAnimator::keyframe(double t) const {
    ZoomKeyframe best{
        .scale = 1, .centerX = m_videoSize.width * 0.5, .centerY = m_videoSize.height * 0.5};
    if (std::isnan(t))
        return best;
    std::optional<std::size_t> winner;
    const auto started = std::ranges::upper_bound(m_starts, t) - m_starts.begin();
    m_ends.forEachAtLeast(t, static_cast<std::size_t>(started), [&](std::size_t rank) {
        const auto click = m_byStart[rank];
        const auto scale = m_zooms[click].scaleAt(t, m_clicks[click].zoomLevel);
        // On a tie the earlier click in the list has the camera.
        if (best.scale < scale || (winner && best.scale == scale && click < *winner)) {
            best.scale = scale;
            winner = click;
        }
    });
    if (winner) {
        const auto position = center(*winner, t, best.scale);
        best.centerX = position.x;
        best.centerY = position.y;
    }
    return best;
}

/// Keeps the magnified view wholly inside the frame.
model::Point ZoomAnimator::clamped(const model::ClickEvent& click, double scale) const {
    const auto halfWidth = m_videoSize.width / scale * 0.5;
    const auto halfHeight = m_videoSize.height / scale * 0.5;
    return {.x = std::max(halfWidth, std::min(click.x, m_videoSize.width - halfWidth)),
            .y = std::max(halfHeight, std::min(click.y, m_videoSize.height - halfHeight))};
}

model::Point ZoomAnimator::center(std::size_t click, double t, double scale) const {
    if (!m_zooms[click].chain)
        return clamped(m_clicks[click], scale);
    const auto leg = legAt(click, t);
    const auto from = clamped(*leg.from, scale);
    const auto to = clamped(*leg.to, scale);
    const auto length = leg.to->timestamp - leg.from->timestamp;
    const auto progress = length <= 0 ? 1.0 : easeInOutCubic((t - leg.from->timestamp) / length);
    return {.x = from.x + (to.x - from.x) * progress, .y = from.y + (to.y - from.y) * progress};
}

/// Before the click and after its last intermediate the camera stands at the latter.
ZoomAnimator::Leg ZoomAnimator::legAt(std::size_t click, double t) const {
    if (m_isOrderly)
        return legInOrder(click, t);
    const auto& owner = m_clicks[*m_zooms[click].chain];
    const auto* from = &m_clicks[click];
    for (const auto& candidate : m_clicks) {
        if (!isIntermediate(candidate, owner))
            continue;
        if (from->timestamp <= t && t <= candidate.timestamp)
            return {.from = from, .to = &candidate};
        from = &candidate;
    }
    return {.from = from, .to = from};
}

ZoomAnimator::Leg ZoomAnimator::legInOrder(std::size_t click, double t) const {
    const auto* own = &m_clicks[click];
    const auto* last = &m_clicks[*m_lastIntermediates[click]];
    if (t < own->timestamp || t > last->timestamp)
        return {.from = last, .to = last};
    const auto* first =
        std::ranges::upper_bound(own + 1, last, own->timestamp, {}, &model::ClickEvent::timestamp);
    const auto* to = std::ranges::lower_bound(first, last, t, {}, &model::ClickEvent::timestamp);
    return {.from = to == first ? own : to - 1, .to = to};
}

} // namespace vantro::render
