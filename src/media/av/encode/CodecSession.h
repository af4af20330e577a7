#pragma once

#include "media/av/EncodedPacket.h"
#include "media/av/Handles.h"

#include <expected>
#include <functional>
#include <string>

namespace vantro::media::av {

/// An opened video encoder. One thread at a time.
class CodecSession {
  public:
    /// Hands a picture to the codec, or null at the end; a libav error code where that fails.
    using Submit = std::function<int(AVCodecContext*, const AVFrame*)>;
    /// Fetches a packet that is ready; AVERROR(EAGAIN) while there is none, AVERROR_EOF at the end.
    using Receive = std::function<int(AVCodecContext*, AVPacket*)>;

    /// `name` is what users know the encoder by.
    CodecSession(std::string name, CodecHandle codec, Submit submit = avcodec_send_frame,
                 Receive receive = avcodec_receive_packet);

    const std::string& name() const { return m_name; }
    const AVCodecContext& context() const { return *m_codec; }

    /// Encodes a picture, or at the end, with null, what is held back, and gives `sink` the packets
    /// that are ready; what `sink` throws passes through. The reason where the encoder fails.
    std::expected<void, std::string> encode(const AVFrame* picture, const PacketSink& sink);

  private:
    std::string m_name;
    CodecHandle m_codec;
    Submit m_submit;
    Receive m_receive;
    EncodedPacket m_packet;
};

} // namespace vantro::media::av
