#pragma once

#include "media/av/encode/CodecSession.h"
#include "media/values/PixelBuffer.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace vantro::media::av {

/// Encodes pictures as H.264 that is cheap to make, to search and to decode: a keyframe at least
/// every quarter of a second, nothing reordered. Each picture's packet is ready at once. One thread
/// at a time, and none of its own.
class ProxyEncoder {
  public:
    /// Sizes are even; times count in 1 / `timescale` of a second. Throws MediaError.
    ProxyEncoder(int width, int height, std::int32_t timescale);

    const AVCodecContext& context() const { return m_session.context(); }
    /// An i420 picture of BT.709 in limited range, shown from `ticks` on, which ascend. Throws
    /// MediaError.
    void encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t ticks,
                const PacketSink& sink);

  private:
    CodecSession m_session;
    std::optional<std::int64_t> m_lastKeyframe; ///< ticks
};

} // namespace vantro::media::av
