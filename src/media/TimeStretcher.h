#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace vantro {

/// Gives the samples from `position` on; positions before 0 and behind the end are silent.
using SampleReader = std::function<void(std::int64_t position, std::span<float> samples)>;

/// Plays sound faster or slower without changing its pitch (waveform-similarity overlap-add).
///
/// Pieces of the source are laid over each other every 10 ms. Each is taken from where the speed
/// demands, moved by at most 7 ms to where its wave goes on best; so nothing drifts, and exactly
/// `targetLength` samples come out of `sourceLength`. The first sample out is the first one in.
/// Stereo in the mix format, interleaved. One thread at a time.
class TimeStretcher {
  public:
    TimeStretcher(std::int64_t sourceLength, std::int64_t targetLength, SampleReader source);

    /// The next samples; silent behind the end.
    void read(std::span<float> samples);

  private:
    void makeBlock();
    std::int64_t bestStart(std::int64_t ideal);

    std::int64_t m_sourceLength;
    std::int64_t m_targetLength;
    SampleReader m_source;
    std::int64_t m_blockIndex = 0;  ///< of the next block
    std::int64_t m_tail = 0;        ///< where the piece laid down last goes on, in the source
    std::vector<float> m_tailSound; ///< from m_tail on, one block
    std::vector<float> m_nearby;    ///< the source around the place where the next piece is sought
    std::vector<float> m_block;
    std::size_t m_taken = 0; ///< of m_block
};

} // namespace vantro
