#pragma once

#include "media/av/Handles.h"
#include "media/values/PixelBuffer.h"

#include <cstdint>
#include <memory>

namespace vantro::media::av {

/// How a picture must be turned to stand upright: shown (x, y) = matrix × stored (x, y).
struct Orientation {
    int xx = 1;
    int xy = 0;
    int yx = 0;
    int yy = 1;
    bool isUpright() const { return xx == 1 && yy == 1; }
    bool swapsSides() const { return xx == 0; }
};

/// Of libav's nine fixed-point numbers; a slant is left as it is stored.
Orientation orientationFromMatrix(const std::uint8_t* matrix);
/// Of EXIF's 1 to 8; upright for anything else.
Orientation orientationFromExif(int value);
Orientation orientation(const AVStream& stream);

/// A copy of the bgra picture that stands upright.
std::shared_ptr<PixelBuffer> turnedUpright(const PixelBuffer& stored, Orientation turn);

} // namespace vantro::media::av
