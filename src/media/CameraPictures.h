#pragma once

#include "media/values/PixelBuffer.h"
#include "media/values/RawPicture.h"

#include <expected>
#include <memory>
#include <string>

namespace vantro::media {

/// Makes pixel buffers of what a camera sends, all of one size, which is even: that of the first
/// picture without a last odd row or column. Should the camera change its size, later pictures are
/// fitted in, on black. One thread at a time.
class CameraPictures {
  public:
    CameraPictures();
    ~CameraPictures();
    CameraPictures(const CameraPictures&) = delete;
    CameraPictures& operator=(const CameraPictures&) = delete;

    /// Why not, where it is broken; the next one may be whole again.
    std::expected<std::shared_ptr<const PixelBuffer>, std::string> convert(const RawPicture& raw);

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::media
