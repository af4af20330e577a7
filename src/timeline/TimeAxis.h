#pragma once

#include "render/timing/SegmentTimeMap.h"

#include <string>
#include <vector>

namespace vantro::timeline {

/// The part of the recording that the time line shows, and how wide. All rows share it. A value;
/// x in points from the row's left edge, places in fractions of the source.
struct TimeAxis {
    double start = 0; ///< the place at x = 0
    double span = 1;  ///< places across the width; 1 shows all
    double width = 0;

    double xOf(double place) const { return (place - start) / span * width; }
    /// Limited to the recording; 0 where the row has no width.
    double placeAt(double x) const;
    /// The same, beyond the recording and the row's ends too: for distances.
    double unlimitedPlaceAt(double x) const { return width > 0 ? start + x / width * span : 0; }
    bool showsAll() const { return span >= 1; }

    /// Magnified by `factor` around what stands at `x`. `shortestSpan` limits it.
    TimeAxis magnified(double factor, double x, double shortestSpan) const;
    TimeAxis scrolled(double points) const;
    /// All of the recording.
    TimeAxis fitted() const { return {.width = width}; }
    /// Scrolled no further than needed so that `place` is seen.
    TimeAxis revealing(double place) const;
    bool operator==(const TimeAxis&) const = default;
};

/// A mark of the ruler, which shows times of the film, each where it lies in the source.
struct RulerMark {
    double x = 0;
    bool isMajor = false;
    std::string label; ///< of major marks
    bool operator==(const RulerMark&) const = default;
};

/// The marks of the visible part, from left to right. Majors lie so far apart that labels
/// `labelWidth` points wide do not collide at speed 1. A film without length has none.
std::vector<RulerMark> rulerMarks(const render::SegmentTimeMap& map, const TimeAxis& axis,
                                  double labelWidth);
/// "1:15", and with tenths where there are any: "0:02.5". From ten seconds on those are left out
/// unless the ruler is magnified so far that they tell marks apart.
std::string rulerLabel(double seconds, bool tenthsAlways = false);

} // namespace vantro::timeline
