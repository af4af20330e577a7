#pragma once

#include "media/av/AudioConverter.h"
#include "media/av/MovieFile.h"
#include "media/values/MediaTime.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vantro::media::av {

/// Sound on its file's time line, in the mix format.
struct DecodedSound {
    std::int64_t position = 0;  ///< of the first sample, samples after time zero
    std::vector<float> samples; ///< interleaved
};

/// Decodes one sound stream of a file in order. Positions ascend; what the file leaves out is a
/// jump from one piece to the next. One thread at a time.
class AudioDecoder {
  public:
    /// Throws MediaError, with "No audio track found" when the file has no such stream.
    AudioDecoder(const MovieReference& movie, int streamIndex);

    /// The next piece, never empty; nothing after the last. Throws MediaError where the movie
    /// breaks off.
    std::optional<DecodedSound> next();
    /// Goes on at a place so far before `position` that everything from there on is right.
    void seek(std::int64_t position);

  private:
    bool receive();
    void feed();
    std::optional<DecodedSound> place();
    std::optional<DecodedSound> rest();
    std::int64_t positionOf(const AVFrame& frame) const;
    [[noreturn]] void breakOff(const std::string& reason) const;

    MovieFile m_file;
    AVStream* m_stream = nullptr;
    StreamClock m_clock;
    CodecHandle m_codec;
    PacketHandle m_packet;
    FrameHandle m_frame;
    bool m_holdsFrame = false; ///< decoded, but what came before it goes out first
    bool m_ended = false;
    std::string m_fault; ///< why the packets ended early
    AudioConverter m_converter;
    std::optional<std::int64_t> m_position; ///< where the next converted sample stands
};

} // namespace vantro::media::av
