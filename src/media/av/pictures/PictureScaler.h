#pragma once

#include "media/av/Handles.h"
#include "media/values/PixelBuffer.h"

#include <memory>

namespace vantro::media::av {

/// Makes pictures smaller or larger, and i420 of BT.709 in limited range. Fast rather than sharp:
/// for pictures that are seen for a moment. One thread at a time.
class PictureScaler {
  public:
    /// The size of the results.
    PictureScaler(int width, int height);

    /// Throws MediaError where the library cannot.
    std::shared_ptr<const PixelBuffer> scale(const PixelBuffer& source);

  private:
    void prepare(const PixelBuffer& source, int width, int height);

    PixelBufferPool m_pool;
    ScalerHandle m_scaler;
};

} // namespace vantro::media::av
