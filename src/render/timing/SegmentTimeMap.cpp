#include "render/timing/SegmentTimeMap.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace vantro::render {

SegmentTimeMap::SegmentTimeMap(std::vector<model::TimelineSegment> segments, double sourceDuration)
    : m_segments(std::move(segments)), m_sourceDuration(sourceDuration), m_totalDuration(0) {
    for (const auto& segment : m_segments)
        m_totalDuration += outputLength(segment);
}

double SegmentTimeMap::outputLength(const model::TimelineSegment& segment) const {
    return (segment.endFraction - segment.startFraction) * m_sourceDuration / segment.speed;
}

double SegmentTimeMap::sourceTime(double outputTime) const {
    if (m_segments.empty())
        return 0;
    auto rest = outputTime;
    for (const auto& segment : m_segments) {
        const auto length = outputLength(segment);
        if (rest <= length) {
            const auto start = segment.startFraction * m_sourceDuration;
            const auto end = segment.endFraction * m_sourceDuration;
            return start + (end - start) * (rest / length);
        }
        rest -= length;
    }
    return m_segments.back().endFraction * m_sourceDuration;
}

double SegmentTimeMap::outputTime(double sourceTime) const {
    const auto fraction = m_sourceDuration > 0 ? sourceTime / m_sourceDuration : 0;
    double accumulated = 0;
    for (const auto& segment : m_segments) {
        if (fraction < segment.startFraction)
            return accumulated;
        if (fraction <= segment.endFraction) {
            const auto share =
                (fraction - segment.startFraction) / (segment.endFraction - segment.startFraction);
            return accumulated + share * outputLength(segment);
        }
        accumulated += outputLength(segment);
    }
    return accumulated;
}

const model::TimelineSegment* SegmentTimeMap::segmentAt(double fraction) const {
    return render::segmentAt(m_segments, fraction);
}

const model::TimelineSegment* segmentAt(std::span<const model::TimelineSegment> segments,
                                        double fraction) {
    // Of the source: forgives the rounding of positions that come from pixels and media times.
    constexpr double tolerance = 0.0005;
    const auto found = std::ranges::find_if(segments, [&](const auto& segment) {
        return segment.startFraction - tolerance <= fraction &&
               fraction <= segment.endFraction + tolerance;
    });
    return found == segments.end() ? nullptr : &*found;
}

std::string speedLabel(double speed) {
    return std::trunc(speed) == speed ? fmt::format("{:.0f}x", speed)
                                      : fmt::format("{:.1f}x", speed);
}

} // namespace vantro::render
