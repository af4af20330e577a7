#pragma once

#include "model/Geometry.h"

#include <optional>
#include <string>

namespace vantro::window::overlay {

/// A rectangle being dragged out, by rules that know no window. All in points, from the screen's
/// top-left corner.
class SelectionGeometry {
  public:
    /// A selection that is not larger than this in both directions was a slip of the hand.
    static constexpr double smallest = 10;

    void press(model::Point at);
    void drag(model::Point to);
    /// The finished rectangle with even width and height; nothing when it is too small, and the
    /// user may drag again.
    std::optional<model::Rect> release();

    /// Zero when there is none.
    const model::Rect& currentRect() const { return m_currentRect; }
    bool isDragging() const { return m_dragging; }
    bool hasArea() const { return m_currentRect.width > 0 && m_currentRect.height > 0; }
    /// For example "640 x 360".
    std::string label() const;

  private:
    std::optional<model::Point> m_origin;
    model::Rect m_currentRect;
    bool m_dragging = false;
};

} // namespace vantro::window::overlay
