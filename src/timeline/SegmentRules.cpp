#include "timeline/SegmentRules.h"

#include <algorithm>
#include <cmath>

namespace vantro::timeline {
namespace {

using model::TimelineSegment;
using List = std::vector<TimelineSegment>;

/// Touching pieces share one fraction; the rest is rounding.
bool touch(const TimelineSegment& left, const TimelineSegment& right) {
    return std::abs(left.endFraction - right.startFraction) < 1e-9;
}

/// `place` between the bounds, which give way to where the edge stands `now`.
double limited(double place, double lowest, double highest, double now) {
    return std::clamp(place, std::min(lowest, now), std::max(highest, now));
}

} // namespace

std::vector<SegmentEdge> edgesOf(const Segments& segments) {
    std::vector<SegmentEdge> edges;
    for (std::size_t index = 0; index < segments.size(); ++index) {
        const auto& segment = segments[index];
        if (index == 0 || !touch(segments[index - 1], segment))
            edges.push_back({SegmentEdge::Kind::start, index, segment.startFraction});
        const bool isJoined = index + 1 < segments.size() && touch(segment, segments[index + 1]);
        edges.push_back({isJoined ? SegmentEdge::Kind::cut : SegmentEdge::Kind::end, index,
                         segment.endFraction});
    }
    return edges;
}

Segments withEdgeMoved(const Segments& before, const SegmentEdge& edge, double place) {
    if (edge.segment >= before.size() || !std::isfinite(place))
        return before;
    List list = before;
    TimelineSegment& segment = list[edge.segment];
    const bool hasNext = edge.segment + 1 < list.size();
    switch (edge.kind) {
    case SegmentEdge::Kind::start:
        segment.startFraction =
            limited(place, edge.segment == 0 ? 0 : list[edge.segment - 1].endFraction,
                    segment.endFraction - shortestPiece, segment.startFraction);
        break;
    case SegmentEdge::Kind::end:
        segment.endFraction =
            limited(place, segment.startFraction + shortestPiece,
                    hasNext ? list[edge.segment + 1].startFraction : 1, segment.endFraction);
        break;
    case SegmentEdge::Kind::cut: {
        if (!hasNext)
            return before;
        TimelineSegment& next = list[edge.segment + 1];
        segment.endFraction = next.startFraction =
            limited(place, segment.startFraction + shortestPiece, next.endFraction - shortestPiece,
                    segment.endFraction);
        break;
    }
    }
    return list == before.list() ? before : Segments(std::move(list));
}

std::optional<SplitSegments> split(const Segments& segments, double place) {
    const auto found = std::ranges::find_if(segments, [&](const TimelineSegment& segment) {
        return segment.startFraction < place && place < segment.endFraction;
    });
    if (found == segments.end() || place - found->startFraction < shortestPiece ||
        found->endFraction - place < shortestPiece ||
        found->endFraction - found->startFraction < 2 * shortestPiece)
        return {};
    const TimelineSegment left{
        .startFraction = found->startFraction, .endFraction = place, .speed = found->speed};
    const TimelineSegment right{
        .startFraction = place, .endFraction = found->endFraction, .speed = found->speed};
    List list = segments;
    const auto at = list.begin() + (found - segments.begin());
    *at = left;
    list.insert(at + 1, right);
    return SplitSegments{std::move(list), left.id, right.id};
}

Segments withoutSegment(const Segments& segments, const model::Uuid& id) {
    if (segments.size() < 2)
        return segments;
    List list = segments;
    std::erase_if(list, [&](const TimelineSegment& segment) { return segment.id == id; });
    return list.size() == segments.size() ? segments : Segments(std::move(list));
}

std::expected<Segments, CutRefusal> withRangeCut(const Segments& segments, double from, double to,
                                                 double frame) {
    if (from > to)
        std::swap(from, to);
    List list;
    bool hasCut = false;
    for (const auto& segment : segments) {
        const bool isTouched = from < segment.endFraction && to > segment.startFraction;
        if (!isTouched || !(from < to)) {
            list.push_back(segment);
            continue;
        }
        hasCut = true;
        TimelineSegment left = segment;
        left.endFraction = std::min(from, segment.endFraction);
        TimelineSegment right = segment;
        right.startFraction = std::max(to, segment.startFraction);
        bool isFirst = true;
        for (TimelineSegment piece : {left, right}) {
            const double length = piece.endFraction - piece.startFraction;
            if (length <= frame)
                continue;
            if (length < shortestPiece)
                return std::unexpected(CutRefusal::pieceTooShort);
            if (!isFirst)
                piece.id = model::Uuid::random();
            list.push_back(piece);
            isFirst = false;
        }
    }
    if (!hasCut)
        return std::unexpected(CutRefusal::nothingMarked);
    if (list.empty())
        return std::unexpected(CutRefusal::nothingLeft);
    return Segments(std::move(list));
}

std::expected<Segments, CutRefusal> withStartAt(const Segments& segments, double place,
                                                double frame) {
    if (segments.empty() || place > segments.front().startFraction)
        return withRangeCut(segments, 0, place, frame);
    return withEdgeMoved(segments, {SegmentEdge::Kind::start, 0}, place);
}

std::expected<Segments, CutRefusal> withEndAt(const Segments& segments, double place,
                                              double frame) {
    if (segments.empty() || place < segments.back().endFraction)
        return withRangeCut(segments, place, 1, frame);
    return withEdgeMoved(segments, {SegmentEdge::Kind::end, segments.size() - 1}, place);
}

Segments withSpeed(const Segments& segments, const model::Uuid& id, double speed) {
    if (!std::isfinite(speed))
        return segments;
    List list = segments;
    for (auto& segment : list)
        if (segment.id == id)
            segment.speed = std::clamp(speed, slowestSpeed, fastestSpeed);
    return list == segments.list() ? segments : Segments(std::move(list));
}

} // namespace vantro::timeline
