#pragma once

#include "media/av/EncodedPacket.h"
#include "media/av/Handles.h"
#include "media/values/WriterSettings.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vantro::media::av {

/// Encodes sound of the mix format as AAC-LC. One thread at a time.
///
/// The encoder primes its decoder with samples before time zero; the first packets' times are
/// negative, and the muxer tells players to skip them.
class AudioEncoder {
  public:
    /// Throws MediaError when the encoder cannot be opened with such settings.
    explicit AudioEncoder(const AudioSettings& settings);

    const AVCodecContext& context() const { return *m_codec; }

    /// Encodes the samples that follow the ones before, interleaved, and gives `sink` what is
    /// ready.
    void encode(std::span<const float> samples, const PacketSink& sink);
    /// Gives what is still held back. Nothing more can be encoded then.
    void drain(const PacketSink& sink);

  private:
    void encodeWaiting(std::size_t frames, const PacketSink& sink);
    void send(const AVFrame* frame, const PacketSink& sink);

    CodecHandle m_codec;
    EncodedPacket m_packet;
    std::vector<float> m_waiting; ///< less than a codec's frame between calls
    std::int64_t m_position = 0;  ///< of the first waiting sample
};

} // namespace vantro::media::av
