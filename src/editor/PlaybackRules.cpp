#include "editor/PlaybackRules.h"

#include <algorithm>
#include <cmath>

namespace vantro::editor {
namespace {

using media::MediaTime;
using media::player::PlannedJump;

/// Of the source: forgives the rounding of positions that come from pixels.
constexpr double lookupTolerance = 0.0005;
/// What it forgives at most, whatever the recording's length: a picture.
constexpr double largestTolerance = 1.0 / 30;
/// A cut below this cannot be told from none.
constexpr double boundaryTick = 1.0 / MediaTime::boundaryTimescale;

bool canBePlayed(const PlayedRange& range) {
    return range.start < range.end && range.speed > 0;
}

} // namespace

MediaTime boundaryNotBefore(double seconds) {
    // Rounding of the product must not cost a whole tick.
    auto time = MediaTime::fromSeconds(seconds);
    while (time.seconds() < seconds)
        ++time.value;
    return time;
}

MediaTime boundaryNotAfter(double seconds) {
    auto time = MediaTime::fromSeconds(seconds);
    while (time.seconds() > seconds)
        --time.value;
    return time;
}

PlaybackRules::PlaybackRules(std::span<const model::TimelineSegment> segments, double duration)
    : m_tolerance(std::min(lookupTolerance * duration, largestTolerance)) {
    for (const auto& segment : segments) {
        const PlayedRange range{std::max(segment.startFraction, 0.0) * duration,
                                std::min(segment.endFraction, 1.0) * duration, segment.speed};
        if (canBePlayed(range))
            m_ranges.push_back(range);
    }
}

const PlayedRange* PlaybackRules::at(double t) const {
    const PlayedRange* ended = nullptr;
    for (const auto& range : m_ranges) {
        if (t < range.end && range.start - m_tolerance <= t)
            return &range;
        if (range.end <= t && t <= range.end + m_tolerance)
            ended = &range;
    }
    return ended;
}

const PlayedRange* PlaybackRules::firstStartingAfter(double t) const {
    const auto found =
        std::ranges::find_if(m_ranges, [t](const auto& range) { return range.start > t; });
    return found == m_ranges.end() ? nullptr : &*found;
}

const PlayedRange* PlaybackRules::lastStartingBefore(double t) const {
    const auto found = std::find_if(m_ranges.rbegin(), m_ranges.rend(),
                                    [t](const auto& range) { return range.start < t; });
    return found == m_ranges.rend() ? nullptr : &*found;
}

PlayingPoint PlaybackRules::start() const {
    return {boundaryNotBefore(m_ranges.front().start), m_ranges.front().speed};
}

PlayingPoint PlaybackRules::after(double t) const {
    const PlayedRange* next = firstStartingAfter(t);
    return next == nullptr ? start() : PlayingPoint{boundaryNotBefore(next->start), next->speed};
}

std::optional<PlannedJump> PlaybackRules::nextJump(double t) const {
    const PlayedRange* range = at(t);
    if (!plays(range, t))
        return {};
    for (;; ++range) {
        const auto end = boundaryNotAfter(range->end);
        if (range == &m_ranges.back())
            return PlannedJump{end, start().time, start().rate};
        const PlayedRange& next = *(range + 1);
        const auto begin = boundaryNotBefore(std::max(next.start, range->end));
        if (next.start - range->end >= boundaryTick)
            return PlannedJump{end, begin, next.speed};
        if (next.speed != range->speed)
            return PlannedJump{begin, begin, next.speed};
    }
}

} // namespace vantro::editor
