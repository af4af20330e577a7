#pragma once

#include "editor/bars/TimelineModel.h"

#include <string>

namespace vantro::editor::bars {

/// What a press on a bar takes hold of, and how everything stood then, from which each step of a
/// drag is worked out. A value; x in points from the left end of the bars, places fractions of the
/// source.
struct BarPress {
    enum class Target { playhead, mark, zoom, suggestion, edge };

    double x = 0;
    double place = 0; ///< may lie beyond the source
    Target target = Target::playhead;
    timeline::ZoomHit zoom = {};
    timeline::SegmentEdge edge = {};
    timeline::Zooms zooms = {};
    timeline::Segments segments = {};
    double playhead = 0;
    std::string key = {}; ///< of the drag's step

    /// A drag of it changes a length.
    bool isOnHandle() const;
    bool isOnZoomBody() const;
    /// Points to travel below which the press is a click.
    double travel() const;
};

/// Where nothing else lies under the pointer: the playhead, or the beginning of a marked range.
BarPress pressOnGround(const TimelineModel& model, double x, bool marks);
// What lies under the pointer there, else the ground.
BarPress pressOnSegments(const TimelineModel& model, double x, bool marks);
BarPress pressOnZooms(const TimelineModel& model, double x, bool marks);

} // namespace vantro::editor::bars
