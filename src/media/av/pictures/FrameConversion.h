#pragma once

#include "media/av/Handles.h"
#include "media/av/MovieFile.h"
#include "media/av/Orientation.h"
#include "media/values/PixelBuffer.h"

#include <memory>

namespace vantro::media::av {

/// The 4:2:2, 4:4:0 and 4:4:4 formats that imply full range are deprecated twins of ordinary ones.
AVPixelFormat formatWithoutRange(AVPixelFormat format);

/// Turns decoded frames of one stream into pixel buffers that stand upright with square pixels.
///
/// 8-bit 4:2:0 in a matrix that ColorDescription knows is handed on as it is, without a copy;
/// everything else becomes bgra, what is transparent laid over black. One thread at a time.
class FrameConverter {
  public:
    explicit FrameConverter(const AVStream& stream);

    /// Throws MediaError when the pixels cannot be converted.
    std::shared_ptr<const PixelBuffer> convert(const AVFrame& frame);

  private:
    bool isHandedOn(const AVFrame& frame) const;
    std::shared_ptr<PixelBuffer> scaledToBgra(const AVFrame& frame);

    PictureSize m_size; ///< before turning upright
    Orientation m_orientation;
    ScalerHandle m_scaler; ///< reused while the frames' properties stay the same
};

} // namespace vantro::media::av
