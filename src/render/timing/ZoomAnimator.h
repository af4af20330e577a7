#pragma once

#include "model/ClickEvent.h"
#include "model/Geometry.h"
#include "render/timing/MaxTree.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace vantro::render {

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
/// from click to click while further ones fall into a zoom's hold. Those further ones are called
/// the click's intermediates; they keep zooms of their own, and the strongest zoom has the camera.
///
/// Pure arithmetic over immutable input; any number of threads may ask at once. Click positions and
/// `videoSize` share one coordinate space, which the answers are in too. A question costs time in
/// the number of zooms under way at that instant, and looks at every click only where the camera
/// pans along a list that is out of order.
class ZoomAnimator {
  public:
    /// `clicks` in order of time: the pan path visits them in this order.
    ZoomAnimator(std::vector<model::ClickEvent> clicks, model::Size videoSize);

    /// The camera at `t` seconds of source time. Never fails.
    ZoomKeyframe keyframe(double t) const;

  private:
    /// The course of one click's zoom in seconds: `start` is source time, the others are lengths.
    struct Zoom {
        double start = 0;
        double delay = 0; ///< a pause at full frame, then
        double zoomIn = 0;
        double hold = 0;
        double zoomOut = 0;
        /// Whose intermediates the camera pans along: the click itself, or another one with the
        /// same identifier; none where it does not pan.
        std::optional<std::size_t> chain;

        double scaleAt(double t, double zoomLevel) const;
        double latestEnd() const;
    };
    /// The stretch of a pan that the camera is on; from a click to itself where it rests.
    struct Leg {
        const model::ClickEvent* from;
        const model::ClickEvent* to;
    };

    void findIntermediates();
    void shareChains();
    void planZooms();
    void indexZooms();
    model::Point center(std::size_t click, double t, double scale) const;
    model::Point clamped(const model::ClickEvent& click, double scale) const;
    Leg legAt(std::size_t click, double t) const;
    Leg legInOrder(std::size_t click, double t) const;

    std::vector<model::ClickEvent> m_clicks;
    model::Size m_videoSize;
    std::vector<Zoom> m_zooms; ///< one for each click
    /// For each click the one of its intermediates that stands last in the list.
    std::vector<std::optional<std::size_t>> m_lastIntermediates;
    bool m_isOrderly = true; ///< the clicks are in order of time, their identifiers distinct

    // The zooms in order of their start, for finding those that are under way.
    std::vector<std::size_t> m_byStart; ///< positions in m_clicks
    std::vector<double> m_starts;
    MaxTree<double> m_ends;
};

} // namespace vantro::render
