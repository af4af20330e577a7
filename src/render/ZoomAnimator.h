#pragma once

#include "model/ClickEvent.h"
#include "model/Geometry.h"

#include <unordered_map>
#include <vector>

namespace vantro {

/// What the camera sees at one instant.
struct ZoomKeyframe {
    /// At or below this a frame counts as not zoomed.
    static constexpr double zoomedThreshold = 1.001;

    double scale = 1;   ///< 1 shows the whole recording; larger is closer
    double centerX = 0; ///< the point in the view's centre, in the units of the video size
    double centerY = 0;

    bool isZoomed() const { return scale > zoomedThreshold; }
    bool operator==(const ZoomKeyframe&) const = default;
};

/// Turns click events into camera movement: eases in towards each click, holds, eases out, and pans
/// from click to click while further ones fall into a zoom's hold.
///
/// Pure arithmetic over immutable input; any number of threads may ask at once. Click positions and
/// `videoSize` share one coordinate space, which the answers are in too.
class ZoomAnimator {
  public:
    /// `clicks` in order of time: the pan path visits them in this order.
    ZoomAnimator(std::vector<ClickEvent> clicks, Size videoSize);

    /// The camera at `t` seconds of source time. Never fails.
    ZoomKeyframe keyframe(double t) const;

  private:
    Point clamped(Point position, double scale) const;
    Point panPosition(const ClickEvent& click, const std::vector<std::size_t>& intermediates,
                      double t, double scale) const;

    std::vector<ClickEvent> m_clicks;
    Size m_videoSize;
    /// A click's identifier → positions in `m_clicks` of the clicks inside its hold.
    std::unordered_map<Uuid, std::vector<std::size_t>> m_intermediates;
};

} // namespace vantro
