#pragma once

#include "media/Composition.h"
#include "media/sound/AudioSource.h"
#include "media/sound/TimeStretcher.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vantro::media {

/// A part of a sound track, and where it is heard; in whole samples.
struct SoundPiece {
    std::int64_t sourceStart = 0;
    std::int64_t sourceEnd = 0;
    std::int64_t targetStart = 0;
    std::int64_t targetEnd = 0;

    std::int64_t sourceLength() const { return sourceEnd - sourceStart; }
    std::int64_t targetLength() const { return targetEnd - targetStart; }
    bool isStretched() const { return sourceLength() != targetLength(); }
    /// Source samples for each of the target.
    double speed() const {
        return static_cast<double>(sourceLength()) / static_cast<double>(targetLength());
    }
};

/// The track's segments.
std::vector<SoundPiece> soundPieces(const CompositionTrack& track);

/// Reads pieces of one sound track in order. They stand back to back; cuts between them fade over a
/// few milliseconds. One thread.
class AudioTrackReader {
  public:
    /// Begins at the first piece. Throws MediaError when the movie cannot be opened.
    AudioTrackReader(const MovieReference& movie, int trackID,
                     const std::vector<SoundPiece>& pieces);

    /// Goes on at `position` of the target with other pieces. The one that sounds goes on unbroken
    /// if it is among them, whatever its end.
    void replan(const std::vector<SoundPiece>& pieces, std::int64_t position);

    /// Adds the next samples at that volume, interleaved, to `mix`; nothing behind the last piece.
    /// Throws MediaError where the movie breaks off.
    void addTo(std::span<float> mix, float volume = 1);
    /// From the next samples on.
    void setNoiseReduced(bool reduced) { m_source.setNoiseReduced(reduced); }

  private:
    struct Stretch : SoundPiece {
        bool fadesIn = false;
        bool fadesOut = false;
    };

    void append(const SoundPiece& piece);
    bool isWithin(const SoundPiece& piece) const;
    void begin(const Stretch& stretch);
    void fill(const Stretch& stretch, std::span<float> samples);
    void readWithin(const Stretch& stretch, std::int64_t position, std::span<float> samples);
    void fade(const Stretch& stretch, std::span<float> samples) const;

    sound::AudioSource m_source;
    std::vector<Stretch> m_stretches;
    std::size_t m_current = 0;
    std::int64_t m_position = 0; ///< of the next sample, in the target
    std::optional<sound::TimeStretcher> m_stretcher;
    std::vector<float> m_scratch;
};

} // namespace vantro::media
