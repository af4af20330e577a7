#pragma once

#include "media/values/MediaTime.h"
#include "media/values/PixelBuffer.h"

#include <memory>

namespace vantro::media {

/// One picture on a time line. A value: copying it shares the pixels. Two frames with the same
/// pixel pointer are the same picture.
struct VideoFrame {
    std::shared_ptr<const PixelBuffer> pixels;
    MediaTime presentationTime;
    MediaTime duration; ///< zero when unknown
};

} // namespace vantro::media
