#pragma once

#include "media/Composition.h"
#include "media/sound/AudioSource.h"
#include "media/sound/TimeStretcher.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vantro::media {

/// Reads the sound of one composition track from its start on, segment by segment. One thread.
class AudioTrackReader {
  public:
    /// Throws MediaError when the track's movie cannot be opened.
    AudioTrackReader(const MovieReference& movie, const CompositionTrack& track);

    /// Adds the next samples, interleaved, to `mix`; nothing behind the last segment.
    void addTo(std::span<float> mix);

  private:
    /// A segment in whole samples.
    struct Stretch {
        std::int64_t sourceStart = 0;
        std::int64_t sourceEnd = 0;
        std::int64_t targetStart = 0;
        std::int64_t targetEnd = 0;
        bool fadesIn = false;
        bool fadesOut = false;

        std::int64_t sourceLength() const { return sourceEnd - sourceStart; }
        std::int64_t targetLength() const { return targetEnd - targetStart; }
        bool isStretched() const { return sourceLength() != targetLength(); }
    };

    void plan(const CompositionTrack& track);
    void begin(const Stretch& stretch);
    void fill(const Stretch& stretch, std::span<float> samples);
    void readWithin(const Stretch& stretch, std::int64_t position, std::span<float> samples);
    void fade(const Stretch& stretch, std::span<float> samples) const;

    sound::AudioSource m_source;
    std::vector<Stretch> m_stretches;
    std::size_t m_current = 0;
    std::int64_t m_position = 0; ///< of the next sample, in the composition
    std::optional<sound::TimeStretcher> m_stretcher;
    std::vector<float> m_scratch;
};

} // namespace vantro::media
