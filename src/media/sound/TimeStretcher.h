#pragma once

#include "media/sound/OnsetFinder.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vantro::media::sound {

/// Plays sound faster or slower without changing its pitch (waveform-similarity overlap-add).
///
/// Pieces of the source are laid over each other every 10 ms. Each is taken from where the speed
/// demands, moved by at most 7 ms to where its wave goes on best; so nothing drifts, and exactly
/// `targetLength` samples come out of `sourceLength`. The first sample out is the first one in.
/// Played slower, a piece would be heard before its time and again after it; played faster, a short
/// sound might be skipped. Where something sudden begins, pieces of what comes before end, and what
/// begins is played from exactly there.
/// Stereo in the mix format, interleaved. One thread at a time.
class TimeStretcher {
  public:
    TimeStretcher(std::int64_t sourceLength, std::int64_t targetLength, SampleReader source);

    /// The next samples; silent behind the end.
    void read(std::span<float> samples);

  private:
    void makeBlock();
    void continueFrom(std::int64_t head);
    void beginAt(std::int64_t onset, std::int64_t target);
    std::int64_t bestStart(std::int64_t ideal, std::int64_t latest);
    std::optional<std::int64_t> nextOnset(std::int64_t ideal);
    std::int64_t sourceAt(std::int64_t target) const;
    std::int64_t targetAt(std::int64_t source) const;

    std::int64_t m_sourceLength;
    std::int64_t m_targetLength;
    SampleReader m_source;
    OnsetFinder m_onsets;
    std::int64_t m_position = 0; ///< of the next block, in the target
    std::int64_t m_earliest =
        0;                   ///< nothing from before it may be heard: the last onset, in the source
    std::int64_t m_tail = 0; ///< where the piece laid down last goes on, in the source
    std::vector<float> m_tailSound; ///< from m_tail on, one block
    std::vector<float> m_nearby;    ///< the source around the place where the next piece is sought
    std::int64_t m_nearbyStart = 0; ///< in the source
    std::vector<float> m_block;
    std::size_t m_taken = 0;     ///< of m_block
    std::size_t m_available = 0; ///< in m_block; less than all before an onset
};

} // namespace vantro::media::sound
