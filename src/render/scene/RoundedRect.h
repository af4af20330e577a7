#pragma once

#include "render/scene/PixelRect.h"

#include <algorithm>
#include <cmath>

namespace vantro::render {

/// A rectangle with rounded corners. The radius is taken as at most half of the shorter side.
///
/// Coverage is the one mask that the recording, its shadow and the webcam picture share; a shader
/// computes the same:
///   q = abs(p − center) − (halfSize − radius)
///   distance = length(max(q, 0)) + min(max(q.x, q.y), 0) − radius
///   coverage = clamp(0.5 − distance, 0, 1)
/// Every pixel with coverage above 0 is drawn, so a quad reaches one pixel beyond the rectangle.
class RoundedRect {
  public:
    RoundedRect(const PixelRect& rect, double radius)
        : m_centerX(rect.x + rect.width / 2)
        , m_centerY(rect.y + rect.height / 2)
        , m_halfWidth(rect.width / 2)
        , m_halfHeight(rect.height / 2)
        , m_radius(radius > 0 ? std::min(radius, std::min(m_halfWidth, m_halfHeight)) : 0) {}

    bool isEmpty() const { return !(m_halfWidth > 0 && m_halfHeight > 0); }
    double left() const { return m_centerX - m_halfWidth; }
    double right() const { return m_centerX + m_halfWidth; }
    double top() const { return m_centerY - m_halfHeight; }
    double bottom() const { return m_centerY + m_halfHeight; }
    double radius() const { return m_radius; }

    /// Signed distance from the outline, negative inside.
    double distance(double x, double y) const {
        const double qx = std::abs(x - m_centerX) - (m_halfWidth - m_radius);
        const double qy = std::abs(y - m_centerY) - (m_halfHeight - m_radius);
        return std::hypot(std::max(qx, 0.0), std::max(qy, 0.0)) + std::min(std::max(qx, qy), 0.0) -
               m_radius;
    }
    /// How much of the pixel whose center is (x, y) lies inside, 0 to 1.
    double coverage(double x, double y) const {
        return isEmpty() ? 0 : std::clamp(0.5 - distance(x, y), 0.0, 1.0);
    }

  private:
    double m_centerX;
    double m_centerY;
    double m_halfWidth;
    double m_halfHeight;
    double m_radius;
};

} // namespace vantro::render
