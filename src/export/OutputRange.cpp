#include "export/OutputRange.h"

#include <algorithm>

namespace vantro::exporting {
namespace {

// Seconds. Shorter than half a tick of the composition: nothing of it would be played.
constexpr double nothing = 1.0 / 1200;

} // namespace

std::vector<model::TimelineSegment> segmentsWithin(std::span<const model::TimelineSegment> segments,
                                                   double sourceDuration, double from, double to) {
    std::vector<model::TimelineSegment> parts;
    double start = 0; // of the segment, in the output
    for (const auto& segment : segments) {
        const double fractionPerSecond = segment.speed / sourceDuration;
        const double length = (segment.endFraction - segment.startFraction) / fractionPerSecond;
        const double first = std::max(from - start, 0.0);
        const double last = std::min(to - start, length);
        if (last - first > nothing) {
            model::TimelineSegment part = segment;
            part.startFraction = segment.startFraction + first * fractionPerSecond;
            // The very number where nothing is cut off: neighbors stay seamless.
            part.endFraction = last == length ? segment.endFraction
                                              : segment.startFraction + last * fractionPerSecond;
            parts.push_back(part);
        }
        start += length;
    }
    return parts;
}

} // namespace vantro::exporting
