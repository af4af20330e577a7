#pragma once

#include "media/values/PixelBuffer.h"

#include <memory>

namespace vantro::render {

/// A picture to draw. Shared and immutable; the same pointer is the same picture.
using ImagePointer = std::shared_ptr<const media::PixelBuffer>;

/// The pointer's picture, premultiplied bgra. Size and hot spot are in cursor units, of which a
/// standard arrow is about 24 high; the bitmap may be finer.
struct CursorImage {
    ImagePointer pixels;
    float width = 0;
    float height = 0;
    float hotSpotX = 0;
    float hotSpotY = 0;
};

} // namespace vantro::render
