#pragma once

#include "media/av/Handles.h"
#include "media/values/RawPicture.h"

#include <cstddef>
#include <span>

namespace vantro::media::av {

/// The library's name for a layout that is not compressed.
AVPixelFormat pixelFormat(RawLayout layout);

/// A picture that is not compressed, in memory of our own: the library reads beyond its end. Throws
/// MediaError where there are fewer bytes than it needs.
FrameHandle copyPicture(const RawPicture& raw);

/// Decodes the pictures of a motion JPEG, each by itself. One thread at a time.
class JpegDecoder {
  public:
    /// Throws MediaError for one that is cut off or damaged. Valid until the next call.
    const AVFrame& decode(std::span<const std::byte> bytes);

  private:
    CodecHandle m_codec;
    PacketHandle m_packet;
    FrameHandle m_frame;
};

} // namespace vantro::media::av
