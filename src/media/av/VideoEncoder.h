#pragma once

#include "media/AssetWriter.h"
#include "media/av/Handles.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace vantro::av {

/// Encodes i420 pictures as H.264 High with libx264. One thread at a time; encodes on threads of
/// its own.
class VideoEncoder {
  public:
    using PacketSink = std::function<void(AVPacket&)>;

    /// Throws MediaError when the encoder cannot be opened with such settings.
    explicit VideoEncoder(const VideoSettings& settings);

    const AVCodecContext& context() const { return *m_codec; }
    /// Presentation times are whole ticks of this.
    std::int32_t timescale() const { return m_codec->time_base.den; }

    /// Encodes a picture shown from `ticks` on, which ascend, and gives `sink` what is ready, in
    /// decoding order. The picture is BT.709 limited range and kept alive as long as needed.
    void encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t ticks,
                const PacketSink& sink);
    /// Gives what is still held back. Nothing more can be encoded then.
    void drain(const PacketSink& sink);

  private:
    void applyRealTimeOptions(const VideoSettings& settings);
    void applyOfflineOptions(const VideoSettings& settings);
    bool needsKeyframe(std::int64_t ticks);
    void send(const AVFrame* frame, const PacketSink& sink);

    CodecHandle m_codec;
    PacketHandle m_packet;
    std::optional<std::int64_t> m_forcedInterval; ///< ticks between keyframes of a live source
    std::int64_t m_lastKeyframe = 0;
    bool m_isFirst = true;
};

/// Ticks a second in which frames of this rate last a whole number of ticks.
std::int32_t timescaleFor(double frameRate);

} // namespace vantro::av
