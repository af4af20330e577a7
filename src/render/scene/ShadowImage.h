#pragma once

#include "render/scene/Renderer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace vantro::render {

/// A canvas-sized plane of 8-bit alpha; its colour is black. Top row first, rows back to back.
struct AlphaImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> alpha;

    const std::uint8_t* row(int y) const {
        return alpha.data() + static_cast<std::ptrdiff_t>(y) * width;
    }
};

/// The key of the shadow that belongs to a frame with a background.
ShadowCacheKey shadowKey(const RenderParams& params);

/// Draws a rounded rectangle in black together with its drop shadow: 10 px further down, blurred by
/// a Gaussian with a standard deviation of 15 px, black at half strength.
///
/// The black fill is there where the recording covers its pixel wholly. The softened rim of the
/// rectangle holds the shadow alone, because black would shine through the recording's own soft rim
/// as a dark line. Pure; a canvas size below 1 is fatal.
std::shared_ptr<const AlphaImage> drawShadow(const ShadowCacheKey& key);

/// Keeps the last shadow. One thread.
class ShadowCache {
  public:
    /// The same pointer while the key is equal.
    const std::shared_ptr<const AlphaImage>& imageFor(const ShadowCacheKey& key);

  private:
    ShadowCacheKey m_key;
    std::shared_ptr<const AlphaImage> m_image;
};

} // namespace vantro::render
