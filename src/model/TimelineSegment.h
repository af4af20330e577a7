#pragma once

#include "model/Uuid.h"

#include <vector>

namespace vantro::model {

/// One kept stretch of the recording and its playback rate. Lists of segments are in output order,
/// ascending and without overlap.
struct TimelineSegment {
    Uuid id = Uuid::random();
    double startFraction = 0; ///< of the source duration
    double endFraction = 1;   ///< of the source duration
    double speed = 1;         ///< 2 plays twice as fast; never 0
    bool operator==(const TimelineSegment&) const = default;
};

/// The timeline of a fresh recording: all of it, at normal speed.
inline std::vector<TimelineSegment> fullLengthTimeline() {
    return {TimelineSegment{}};
}

} // namespace vantro::model
