#pragma once

#include "model/SharedList.h"
#include "model/TimelineSegment.h"

#include <cstddef>
#include <expected>
#include <optional>
#include <string_view>
#include <vector>

namespace vantro::timeline {

/// Rules for editing the kept pieces of a recording. Pure; places are fractions of the source.
///
/// Pieces stay in order and apart, and none becomes shorter than `shortestPiece`. Where a file from
/// elsewhere has overlapping pieces, no step makes an overlap larger.
using Segments = model::SharedList<model::TimelineSegment>;

/// Of the source. What is cut out may be shorter.
inline constexpr double shortestPiece = 0.005;
inline constexpr double slowestSpeed = 0.25;
inline constexpr double fastestSpeed = 16;

/// Something at the bar that can be dragged.
struct SegmentEdge {
    enum class Kind {
        start, ///< of `segment` alone: the trim start, or the right edge of a gap
        end,   ///< of `segment` alone: the trim end, or the left edge of a gap
        cut    ///< between `segment` and the next, which touch
    };
    Kind kind = Kind::start;
    std::size_t segment = 0; ///< index
    double place = 0;
    bool operator==(const SegmentEdge&) const = default;
};
/// All edges, from left to right.
std::vector<SegmentEdge> edgesOf(const Segments& segments);
/// The edge of `before` moved to `place`, or as near as the neighbors allow.
Segments withEdgeMoved(const Segments& before, const SegmentEdge& edge, double place);

/// The first piece that holds `place` strictly inside, made into two, both with its speed; nothing
/// where a piece would become too short.
struct SplitSegments {
    Segments segments;
    model::Uuid left;
    model::Uuid right;
};
std::optional<SplitSegments> split(const Segments& segments, double place);

/// Without this piece; unchanged where it is the only one.
Segments withoutSegment(const Segments& segments, const model::Uuid& id);

/// Why nothing was cut.
enum class CutRefusal {
    nothingMarked, ///< the range holds nothing of the film
    nothingLeft,   ///< the film would be empty
    pieceTooShort  ///< a piece longer than a frame but too short to be kept would be left
};
/// Without what lies in `from` … `to`. What is left of a piece and no longer than `frame` goes with
/// it.
std::expected<Segments, CutRefusal> withRangeCut(const Segments& segments, double from, double to,
                                                 double frame);

/// The film made to begin, or to end, at `place`: what stands before it, or behind it, goes. The
/// first start and the last end can also be drawn outward again.
std::expected<Segments, CutRefusal> withStartAt(const Segments& segments, double place,
                                                double frame);
std::expected<Segments, CutRefusal> withEndAt(const Segments& segments, double place, double frame);

/// Limited to 0.25 … 16.
Segments withSpeed(const Segments& segments, const model::Uuid& id, double speed);

} // namespace vantro::timeline
