#pragma once

#include "model/TimelineSegment.h"

#include <span>
#include <vector>

namespace vantro::exporting {

/// The parts of `segments` that play between two times of the output, seconds, at the same speeds.
/// Empty when nothing plays there. `sourceDuration` is the recording's, seconds.
std::vector<model::TimelineSegment> segmentsWithin(std::span<const model::TimelineSegment> segments,
                                                   double sourceDuration, double from, double to);

} // namespace vantro::exporting
