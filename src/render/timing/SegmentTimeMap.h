#pragma once

#include "model/TimelineSegment.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vantro::render {

/// Converts between output time (what a viewer of the export sees) and source time (the recording's
/// own clock), both in seconds. A pure value.
class SegmentTimeMap {
  public:
    SegmentTimeMap(std::vector<model::TimelineSegment> segments, double sourceDuration);

    const std::vector<model::TimelineSegment>& segments() const { return m_segments; }
    double sourceDuration() const { return m_sourceDuration; }
    double totalDuration() const { return m_totalDuration; }

    /// Times past the end stick to the end of the last kept stretch.
    double sourceTime(double outputTime) const;
    /// A source time inside a cut gives the output time of the cut.
    double outputTime(double sourceTime) const;
    /// The first segment that holds `fraction`, give or take half a thousandth of the source.
    const model::TimelineSegment* segmentAt(double fraction) const;

  private:
    double outputLength(const model::TimelineSegment& segment) const;

    std::vector<model::TimelineSegment> m_segments;
    double m_sourceDuration;
    double m_totalDuration;
};

/// SegmentTimeMap's rule for a list alone; the answer points into it.
const model::TimelineSegment* segmentAt(std::span<const model::TimelineSegment> segments,
                                        double fraction);
/// "2x", "1.5x".
std::string speedLabel(double speed);

} // namespace vantro::render
