#pragma once

#include "media/av/NoiseFilter.h"
#include "media/av/decode/AudioDecoder.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vantro::media::sound {

/// A movie's sound track as one endless line of samples in the mix format: silence before it,
/// behind it and where it has gaps. Its noise is reduced where that is wanted.
///
/// Going forward decodes on; going back by more than a fifth of a second, or far ahead, seeks. One
/// thread at a time.
class AudioSource {
  public:
    /// Throws MediaError, with "No audio track found" when there is none with that id.
    AudioSource(const MovieReference& movie, int trackID);

    /// Fills `samples`, interleaved, with what sounds from `position` on (samples after time zero,
    /// which may be negative). Throws MediaError where the movie breaks off.
    void read(std::int64_t position, std::span<float> samples);
    /// From the next read on.
    void setNoiseReduced(bool reduced);

  private:
    std::int64_t bufferEnd() const;
    void moveTo(std::int64_t position);
    void fillUpTo(std::int64_t end);
    void forgetBefore(std::int64_t position);
    void put(std::span<const float> samples);
    void putSilence(std::int64_t frames);

    av::AudioDecoder m_decoder;
    std::int64_t m_bufferStart = 0;
    std::vector<float> m_buffer;
    std::int64_t m_put = 0; ///< the source up to there is in the buffer or in the noise filter
    std::optional<av::DecodedSound> m_next; ///< decoded, lies at or behind m_put
    bool m_isNoiseReduced = false;
    bool m_isStale = false; ///< the buffer holds what is not wanted any more
    std::optional<av::NoiseFilter> m_noise;
    bool m_ended = false;
};

} // namespace vantro::media::sound
