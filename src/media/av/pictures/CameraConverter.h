#pragma once

#include "media/av/pictures/CameraFrame.h"
#include "media/values/PixelBuffer.h"

#include <memory>
#include <optional>

namespace vantro::media::av {

/// As CameraPictures; throws MediaError.
class CameraConverter {
  public:
    std::shared_ptr<const PixelBuffer> convert(const RawPicture& raw);

  private:
    struct Size {
        int width;
        int height;
    };

    std::shared_ptr<const PixelBuffer> fit(const AVFrame& frame);

    JpegDecoder m_decoder;
    ScalerHandle m_scaler;
    std::optional<Size> m_size; ///< of all pictures
};

} // namespace vantro::media::av
