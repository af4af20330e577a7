#include "timeline/TimelineRows.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantro::timeline {
namespace {

// Points. Narrower blocks with less than this between them run together: the pointer could hardly
// tell them apart, and a long recording would have thousands of them.
constexpr double narrowBlock = 12;
constexpr double narrowGap = 8;
constexpr double widestRun = 90;
// Points to the next edge, below which one is neither drawn nor met: it would cover the pieces.
constexpr double crowded = 3;
// Points. Below this the handles of a block would leave nothing to hold it by.
constexpr double widthForHandles = 24;
// Points. A thinner gap is no more than the line that stands between any two pieces.
constexpr double thinnestGap = 1;
// Points around a block in which it is still met, so that thin ones can be clicked.
constexpr double nearby = 3;

struct Extent {
    double x = 0;
    double width = 0;
};

/// Nothing where the axis shows none of it.
std::optional<Extent> seen(double start, double end, const TimeAxis& axis) {
    if (!(axis.width > 0) || !(end > axis.start) || !(start < axis.start + axis.span))
        return {};
    const double x = axis.xOf(start);
    return Extent{x, axis.xOf(end) - x};
}

bool runTogether(const ZoomRow& left, const ZoomRow& right) {
    return !left.isSelected && !right.isSelected && right.width < narrowBlock &&
           (left.count > 1 || left.width < narrowBlock) &&
           right.x - (left.x + left.width) < narrowGap &&
           right.x + right.width - left.x < widestRun;
}

/// Where the parts of a block begin and end.
std::optional<ZoomPart> partAt(const ZoomRow& row, double x, double handleWidth) {
    const double right = row.x + row.width;
    const bool isNarrow = row.width < widthForHandles;
    if (isNarrow && !row.isSelected)
        return x >= row.x && x <= right ? std::optional(ZoomPart::body) : std::nullopt;
    const double outside = isNarrow ? handleWidth : 0;
    const double inside = isNarrow ? 0 : handleWidth;
    if (x < row.x - outside || x > right + outside)
        return {};
    if (x < row.x + inside)
        return ZoomPart::start;
    return x > right - inside ? ZoomPart::end : ZoomPart::body;
}

double distance(const ZoomRow& row, double x) {
    return std::max({row.x - x, x - (row.x + row.width), 0.0});
}

/// Of the zooms of a run the one whose click is nearest.
model::Uuid nearestOf(const ZoomRow& row, const Zooms& zooms, double time) {
    const model::ClickEvent* nearest = nullptr;
    for (const auto& zoom : zooms) {
        const bool isOfRow = !model::isSilenced(zoom) &&
                             zoom.timestamp + zoom.endOffset > row.start &&
                             zoom.timestamp - zoom.startOffset < row.end;
        if (isOfRow && (nearest == nullptr ||
                        std::abs(zoom.timestamp - time) < std::abs(nearest->timestamp - time)))
            nearest = &zoom;
    }
    return nearest == nullptr ? row.id : nearest->id;
}

} // namespace

bool isEdgeOf(const SegmentEdge& edge, std::size_t segment) {
    const bool isShared = edge.kind == SegmentEdge::Kind::cut;
    return edge.segment == segment || (isShared && edge.segment + 1 == segment);
}

std::vector<ZoomRow> zoomRows(const Zooms& zooms, const Segments& segments, double duration,
                              const TimeAxis& axis, const std::optional<model::Uuid>& selected) {
    std::vector<ZoomRow> rows;
    const double first = axis.start * duration;
    const double last = (axis.start + axis.span) * duration;
    for (const auto& zoom : zooms) {
        if (zoom.timestamp + zoom.endOffset < first || zoom.timestamp - zoom.startOffset > last)
            continue; // what is not in view is not looked up among the segments
        const auto place = placeOf(zoom, segments.list(), duration);
        const auto extent = place ? seen(place->start, place->end, axis) : std::nullopt;
        if (!extent)
            continue;
        const ZoomRow row{.id = zoom.id,
                          .x = extent->x,
                          .width = extent->width,
                          .time = zoom.timestamp,
                          .start = place->start * duration,
                          .end = place->end * duration,
                          .level = zoom.zoomLevel,
                          .isSelected = zoom.id == selected};
        if (!rows.empty() && runTogether(rows.back(), row)) {
            auto& run = rows.back();
            run.width = std::max(run.width, row.x + row.width - run.x);
            run.end = std::max(run.end, row.end);
            ++run.count;
        } else {
            rows.push_back(row);
        }
    }
    return rows;
}

std::vector<SegmentRow> segmentRows(const Segments& segments, const TimeAxis& axis,
                                    const std::optional<model::Uuid>& selected) {
    std::vector<SegmentRow> rows;
    for (std::size_t index = 0; index < segments.size(); ++index) {
        const auto& segment = segments[index];
        if (const auto extent = seen(segment.startFraction, segment.endFraction, axis))
            rows.push_back({.id = segment.id,
                            .index = index,
                            .x = extent->x,
                            .width = extent->width,
                            .speed = segment.speed,
                            .isSelected = segment.id == selected});
    }
    return rows;
}

std::vector<GapRow> gapRows(const Segments& segments, const TimeAxis& axis) {
    std::vector<GapRow> rows;
    const auto add = [&](double start, double end) {
        if (start < end)
            if (const auto extent = seen(start, end, axis); extent && extent->width >= thinnestGap)
                rows.push_back({extent->x, extent->width});
    };
    double end = 0;
    for (const auto& segment : segments) {
        add(end, segment.startFraction);
        end = std::max(end, segment.endFraction);
    }
    add(end, 1);
    return rows;
}

std::vector<EdgeRow> edgeRows(const Segments& segments, double duration, const TimeAxis& axis,
                              std::optional<std::size_t> always) {
    std::vector<EdgeRow> rows;
    for (const auto& edge : edgesOf(segments))
        if (axis.width > 0 && edge.place >= axis.start && edge.place <= axis.start + axis.span)
            rows.push_back({.id = segments[edge.segment].id,
                            .edge = edge,
                            .x = axis.xOf(edge.place),
                            .time = edge.place * duration});
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const double before = i > 0 ? rows[i].x - rows[i - 1].x : axis.width;
        const double behind = i + 1 < rows.size() ? rows[i + 1].x - rows[i].x : axis.width;
        rows[i].room = std::min(before, behind);
    }
    std::erase_if(rows, [always](const auto& row) {
        return row.room < crowded && !(always && isEdgeOf(row.edge, *always));
    });
    return rows;
}

std::optional<ZoomHit> zoomAt(const std::vector<ZoomRow>& rows, const Zooms& zooms,
                              const TimeAxis& axis, double duration, double x, double handleWidth) {
    const ZoomRow* best = nullptr;
    std::optional<ZoomPart> part;
    for (const auto& row : rows) {
        const auto here = partAt(row, x, handleWidth);
        if (here && (!part || row.isSelected)) {
            best = &row;
            part = here;
        }
    }
    if (best == nullptr) {
        const auto nearest =
            std::ranges::min_element(rows, {}, [x](const auto& row) { return distance(row, x); });
        if (nearest == rows.end() || distance(*nearest, x) > nearby)
            return {};
        best = &*nearest;
    }
    if (best->count == 1)
        return ZoomHit{best->id, part.value_or(ZoomPart::body)};
    return ZoomHit{nearestOf(*best, zooms, axis.placeAt(x) * duration), ZoomPart::body};
}

std::optional<SegmentEdge> edgeAt(const std::vector<EdgeRow>& rows, double x, double handleWidth) {
    const auto nearest =
        std::ranges::min_element(rows, {}, [x](const auto& row) { return std::abs(row.x - x); });
    if (nearest == rows.end() ||
        std::abs(nearest->x - x) > std::min(handleWidth / 2, nearest->room / 3))
        return {};
    return nearest->edge;
}

} // namespace vantro::timeline
