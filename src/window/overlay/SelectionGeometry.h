#pragma once

#include "model/Geometry.h"

#include <optional>
#include <string>

namespace vantro::window::overlay {

/// The area on a screen that is being dragged out or set by keys, by rules that know no window. All
/// in points, from the screen's top-left corner.
class SelectionGeometry {
  public:
    /// A selection that is not larger than this in both directions was a slip of the hand.
    static constexpr double smallest = 10;

    /// Of the screen: what keys set stays inside of it.
    void setBounds(model::Size bounds) { m_bounds = bounds; }

    void press(model::Point at);
    void drag(model::Point to);
    /// The finished rectangle with even width and height; nothing when it is too small, and the
    /// user may drag again.
    std::optional<model::Rect> release();

    /// Makes this the selection, as far as it lies within the bounds; nothing where that is too
    /// small.
    void select(const model::Rect& rect);
    /// Nothing without a selection.
    void moveBy(double x, double y);
    /// The right and lower edges go.
    void growBy(double width, double height);
    /// Takes up to four numbers from a text: width, height, x and y. Those that are missing stay,
    /// else the area lies in the middle.
    void type(const std::string& text);
    /// As `release` would finish it.
    std::optional<model::Rect> finished() const;

    /// Zero when there is none.
    const model::Rect& currentRect() const { return m_currentRect; }
    bool isDragging() const { return m_dragging; }
    bool hasArea() const { return m_currentRect.width > 0 && m_currentRect.height > 0; }
    /// For example "640 x 360".
    std::string label() const;

  private:
    std::optional<model::Point> m_origin;
    model::Rect m_currentRect;
    model::Size m_bounds;
    bool m_dragging = false;
};

} // namespace vantro::window::overlay
