#pragma once

#include "media/player/PlayerControl.h"

#include <cstdint>
#include <optional>

namespace vantro::media::player {

/// A picture that playing will show.
struct PathPoint {
    MediaTime time;         ///< of the item
    bool afterJump = false; ///< behind the planned jump
    bool operator==(const PathPoint&) const = default;
};

/// The times whose pictures playing shows: multiples of the video's frame duration, as an export's;
/// above rate 1 of `rate` times as much, so that no more of them are made in a second. A jump goes
/// on at exactly its target. A value.
class PicturePath {
  public:
    PicturePath() = default;
    PicturePath(MediaTime frameDuration, double rate, std::optional<PlannedJump> jump,
                MediaTime end);

    const std::optional<PlannedJump>& jump() const { return m_jump; }
    /// What is shown behind `point`; nothing at the end. Times less than half a step away from it
    /// are left out.
    std::optional<PathPoint> after(PathPoint point) const;
    /// Between successive pictures, seconds of the item.
    double step(bool afterJump) const;
    /// Whether playing still comes to `point`, which another path led to.
    bool leadsTo(PathPoint point, const PicturePath& other) const;

  private:
    Fraction stepOf(double rate) const;

    MediaTime m_frameDuration{1, 60};
    double m_rate = 1;
    std::optional<PlannedJump> m_jump;
    MediaTime m_end;
};

} // namespace vantro::media::player
