#pragma once

#include "media/av/encode/CodecSession.h"
#include "media/values/PixelBuffer.h"
#include "media/values/WriterSettings.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantro::media::av {

/// Encodes i420 pictures as H.264 High. One thread at a time; encodes on threads of its own.
///
/// A hardware encoder that fails in the middle is succeeded by libx264 from the first picture on
/// that it did not give back, with an IDR picture. Both encoders' parameter sets, which have
/// different numbers, stand in the header from the beginning.
class VideoEncoder {
  public:
    /// With the encoder that the settings ask for. Throws MediaError when none can be opened.
    explicit VideoEncoder(const VideoSettings& settings);
    /// With an encoder that keeps the pictures' order and that libx264 succeeds when it fails.
    VideoEncoder(const VideoSettings& settings, CodecSession hardware);

    /// What a file must know of the packets; of no encoder that still works.
    const AVCodecContext& context() const { return *m_format; }
    /// Presentation times are whole ticks of this.
    std::int32_t timescale() const { return m_format->time_base.den; }
    /// "libx264", or "nvenc, libx264" where one succeeded the other.
    const std::string& name() const { return m_name; }

    /// Encodes a picture shown from `ticks` on, which ascend, and gives `sink` what is ready, in
    /// decoding order. The picture is BT.709 limited range and kept alive as long as needed.
    /// Throws MediaError when no encoder goes on.
    void encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t ticks,
                const PacketSink& sink);
    /// Gives what is still held back. Nothing more can be encoded then.
    void drain(const PacketSink& sink);

  private:
    using Bytes = std::vector<std::uint8_t>;
    struct Picture {
        std::shared_ptr<const PixelBuffer> pixels;
        std::int64_t ticks;
    };

    void announceSuccessor();
    bool needsKeyframe(std::int64_t ticks);
    bool isSameInstant(std::int64_t a, std::int64_t b) const;
    void send(const AVFrame* frame, const PacketSink& sink);
    std::expected<void, std::string> sendToHardware(const AVFrame* frame, const PacketSink& sink);
    void succeed(const std::string& reason, const PacketSink& sink);

    VideoSettings m_settings;
    CodecSession m_session;
    bool m_hasSuccessor;
    CodecHandle m_format; ///< never opened
    std::string m_name;
    Bytes m_successorHeader;
    std::deque<Picture> m_unfinished;             ///< what a successor would have to encode again
    std::optional<std::int64_t> m_forcedInterval; ///< ticks between keyframes of a live source
    std::int64_t m_lastKeyframe = 0;
    bool m_isFirst = true;
};

} // namespace vantro::media::av
