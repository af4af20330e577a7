#pragma once

#include "model/Geometry.h"

#include <optional>
#include <string>

namespace vantro {

/// A rectangle being dragged out, by rules that know no window. All in points, from the screen's
/// top-left corner.
class SelectionGeometry {
  public:
    /// A selection that is not larger than this in both directions was a slip of the hand.
    static constexpr double smallest = 10;

    void press(Point at);
    void drag(Point to);
    /// The finished rectangle with even width and height; nothing when it is too small, and the
    /// user may drag again.
    std::optional<Rect> release();

    /// Zero when there is none.
    const Rect& currentRect() const { return m_currentRect; }
    bool isDragging() const { return m_dragging; }
    bool hasArea() const { return m_currentRect.width > 0 && m_currentRect.height > 0; }
    /// For example "640 x 360".
    std::string label() const;

  private:
    std::optional<Point> m_origin;
    Rect m_currentRect;
    bool m_dragging = false;
};

} // namespace vantro
