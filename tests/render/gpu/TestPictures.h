#pragma once

#include "media/values/PixelBuffer.h"

#include <cstdint>
#include <memory>

namespace vantro::render::gpu {

/// A picture like a screen's: soft gradients, hard-edged blocks and fine lines; `seed` varies it.
/// Planar ones hold the same kind of content, of the given colour description.
std::shared_ptr<media::PixelBuffer> screenPicture(media::PixelFormat format, int width, int height,
                                                  std::uint32_t seed,
                                                  media::ColorDescription color = {});

/// A bgra picture with soft transparency, its colour multiplied by alpha.
std::shared_ptr<media::PixelBuffer> translucentPicture(int width, int height, std::uint32_t seed);

} // namespace vantro::render::gpu
