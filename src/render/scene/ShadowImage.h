#pragma once

#include "render/scene/PixelRect.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace vantro::render {

/// A canvas-sized plane of alpha, 65536 for opaque; its color is black. Top row first, rows back to
/// back. Finer than 8 bits, so that what it lies on is rounded only once.
struct AlphaImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint16_t> alpha;

    const std::uint16_t* row(int y) const {
        return alpha.data() + static_cast<std::ptrdiff_t>(y) * width;
    }
};

/// The rounded rectangle that throws a shadow, and the canvas that it falls on.
struct ShadowShape {
    PixelSize canvas;
    PixelRect place;
    double cornerRadius = 0; ///< pixels
    double scale = 1;        ///< the shadow's own measures are multiplied by it
    bool operator==(const ShadowShape&) const = default;
};

/// Draws the drop shadow of a rounded rectangle: 10 px further down, blurred by a Gaussian with a
/// standard deviation of 15 px, black at half strength. These measures are multiplied by the
/// shape's scale. Nothing is left out under the rectangle itself. Pure; a canvas size below 1 is
/// fatal.
std::shared_ptr<const AlphaImage> drawShadow(const ShadowShape& shape);

/// Keeps the last shadow. One thread.
class ShadowCache {
  public:
    /// The same pointer while the shape is equal.
    const std::shared_ptr<const AlphaImage>& imageFor(const ShadowShape& shape);

  private:
    ShadowShape m_shape;
    std::shared_ptr<const AlphaImage> m_image;
};

} // namespace vantro::render
