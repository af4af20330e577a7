#pragma once

#include "media/player/PlayerControl.h"
#include "model/TimelineSegment.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace vantro::editor {

/// A stretch of the movie that the edit keeps, in seconds of the movie, and its playing rate.
struct PlayedRange {
    double start = 0;
    double end = 0;
    double speed = 1;
    bool operator==(const PlayedRange&) const = default;
};

/// A place to go on playing at.
struct PlayingPoint {
    media::MediaTime time;
    double rate = 1;
    bool operator==(const PlayingPoint&) const = default;
};

/// What playing an edit means for a player that plays the whole movie: where it jumps, and how fast
/// it plays. Times are seconds of the movie. A value; nothing here fails.
class PlaybackRules {
  public:
    PlaybackRules() = default;
    /// Segments in ascending order. What lies outside of the movie is left out of them; a
    /// `duration` of 0 leaves nothing.
    PlaybackRules(std::span<const model::TimelineSegment> segments, double duration);

    const std::vector<PlayedRange>& ranges() const { return m_ranges; }
    bool empty() const { return m_ranges.empty(); }

    /// The range with start ≤ t < end. Where there is none, the nearest one within a picture: one
    /// that is about to begin before one that has ended.
    const PlayedRange* at(double t) const;
    /// Whether playing at `t` goes on within the range that `at` found.
    static bool plays(const PlayedRange* range, double t) {
        return range != nullptr && t < range->end;
    }
    const PlayedRange* firstStartingAfter(double t) const;
    const PlayedRange* lastStartingBefore(double t) const;

    /// Where playing starts over. Only where there are ranges.
    PlayingPoint start() const;
    /// Where playing goes on that has reached `t`, which no range plays: the next range, after the
    /// last the first. Only where there are ranges.
    PlayingPoint after(double t) const;
    /// What happens next to playing that goes on from `t`: a jump over a gap, back to the start, or
    /// with equal times just another rate. Nothing where `t` is not played.
    std::optional<media::player::PlannedJump> nextJump(double t) const;

  private:
    std::vector<PlayedRange> m_ranges;
    double m_tolerance = 0; ///< seconds
};

/// The first time on the boundary timescale that is not before `seconds`.
media::MediaTime boundaryNotBefore(double seconds);
/// The last one that is not after.
media::MediaTime boundaryNotAfter(double seconds);

} // namespace vantro::editor
