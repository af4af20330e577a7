#pragma once

#include "timeline/SegmentRules.h"
#include "timeline/TimeAxis.h"
#include "timeline/ZoomRules.h"

#include <optional>
#include <string>
#include <vector>

namespace vantro::timeline {

/// What stands in the rows of the time line, and what the pointer meets there. Pure. Only what the
/// axis shows is listed, from left to right; x and widths in points, times in seconds of the
/// source.

/// A block of the zoom bar.
struct ZoomRow {
    model::Uuid id;
    double x = 0;
    double width = 0;
    double time = 0; ///< of the click
    double start = 0;
    double end = 0;
    double level = 1;
    int count = 1; ///< more than one: a run of zooms too narrow to be told apart
    bool isSelected = false;
    bool isStop = false; ///< the Tab key goes here: the selected one, else the first
    bool operator==(const ZoomRow&) const = default;
};
/// At most one block for every few points of width, however many zooms there are; the selected one
/// stands for itself.
std::vector<ZoomRow> zoomRows(const Zooms& zooms, const Segments& segments, double duration,
                              const TimeAxis& axis, const std::optional<model::Uuid>& selected);

struct SegmentRow {
    model::Uuid id;
    std::size_t index = 0;
    double x = 0;
    double width = 0;
    double speed = 1;
    bool isSelected = false;
    bool isStop = false; ///< as of a zoom
    bool operator==(const SegmentRow&) const = default;
};
std::vector<SegmentRow> segmentRows(const Segments& segments, const TimeAxis& axis,
                                    const std::optional<model::Uuid>& selected);

/// What was cut, also before the first piece and behind the last, where it is wide enough to be
/// seen.
struct GapRow {
    double x = 0;
    double width = 0;
    bool operator==(const GapRow&) const = default;
};
std::vector<GapRow> gapRows(const Segments& segments, const TimeAxis& axis);

struct EdgeRow {
    model::Uuid id; ///< of the segment; of a cut that of the one before it
    SegmentEdge edge;
    double x = 0;
    double time = 0;
    double room = 0;     ///< points to the nearest other edge
    bool isStop = false; ///< of the segment that the Tab key goes to
    bool operator==(const EdgeRow&) const = default;
};
bool isEdgeOf(const SegmentEdge& edge, std::size_t segment);
/// Edges that stand too close to be told apart are left out until the axis is magnified, but for
/// those of the segment `always`, which the keyboard reaches however small it is.
std::vector<EdgeRow> edgeRows(const Segments& segments, double duration, const TimeAxis& axis,
                              std::optional<std::size_t> always = {});

/// A part of a zoom's block.
enum class ZoomPart { body, start, end };
struct ZoomHit {
    model::Uuid id;
    ZoomPart part = ZoomPart::body;
    bool operator==(const ZoomHit&) const = default;
};
/// The handles lie at the ends of a block; of a narrow one, which has them only while it is
/// selected, outside of it. Of zooms drawn as one the one nearest to `x` is meant.
std::optional<ZoomHit> zoomAt(const std::vector<ZoomRow>& rows, const Zooms& zooms,
                              const TimeAxis& axis, double duration, double x, double handleWidth);
/// The edge whose handle lies at `x`; of two the nearer one. Where edges are crowded the handles
/// are narrower, so that the pieces between them can still be clicked.
std::optional<SegmentEdge> edgeAt(const std::vector<EdgeRow>& rows, double x, double handleWidth);

} // namespace vantro::timeline
