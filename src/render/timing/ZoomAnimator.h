#pragma once

#include "model/ClickEvent.h"
#include "model/Geometry.h"

#include <cstddef>
#include <vector>

namespace vantro::render {

/// What the camera sees at one instant.
struct ZoomKeyframe {
    /// At or below this a frame counts as not zoomed.
    static constexpr double zoomedThreshold = 1.001;

    double scale = 1;   ///< 1 shows the whole recording; larger is closer
    double centerX = 0; ///< the point in the view's center, in the units of the video size
    double centerY = 0;

    bool isZoomed() const { return scale > zoomedThreshold; }
    bool operator==(const ZoomKeyframe&) const = default;
};

/// Turns click events into camera movement: eases in towards each click, holds, eases out, and pans
/// from click to click while further ones fall into a zoom's hold. Those keep zooms of their own,
/// unless they are silenced, and the strongest zoom has the camera.
///
/// Pure arithmetic over immutable input; any number of threads may ask at once. Click positions and
/// `videoSize` share one coordinate space, which the answers are in too. A question costs a look at
/// each zoom.
class ZoomAnimator {
  public:
    /// `clicks` in any order. Those whose time is not a number are left out.
    ZoomAnimator(std::vector<model::ClickEvent> clicks, model::Size videoSize);

    /// The camera at `t` seconds of source time. Never fails.
    ZoomKeyframe keyframe(double t) const;

  private:
    /// The course of one click's zoom in seconds: `start` is source time, the others are lengths.
    struct Zoom {
        std::size_t click = 0;     ///< positions in m_clicks
        std::size_t firstStop = 0; ///< where the camera pans to during the hold
        std::size_t endStop = 0;   ///< one past the last of these stops; firstStop if none
        double level = 1;
        double start = 0;
        double delay = 0; ///< a pause at full frame, then
        double zoomIn = 0;
        double hold = 0;
        double zoomOut = 0;

        double scaleAt(double t) const;
    };

    Zoom zoomOf(std::size_t click) const;
    model::Point center(const Zoom& zoom, double t, double scale) const;
    model::Point clamped(std::size_t click, double scale) const;

    std::vector<model::ClickEvent> m_clicks; ///< in order of time
    std::vector<Zoom> m_zooms;               ///< in order of their clicks
    model::Size m_videoSize;
};

} // namespace vantro::render
