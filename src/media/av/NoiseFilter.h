#pragma once

#include "media/av/Handles.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vantro::media::av {

/// Takes steady noise out of sound in the mix format: libavfilter's `afftdn`, by spectra of 37 ms.
///
/// What comes out belongs to the place where it went in: the filter's own delay is taken off. So
/// the last 25 ms and more stay behind until more is put in. One thread at a time.
class NoiseFilter {
  public:
    /// How many samples before a place the filter must have heard to give there what it gives when
    /// it has heard all.
    static constexpr std::int64_t preroll = 12'000;

    /// Throws MediaError where the library has no such filter.
    NoiseFilter();

    /// Appends what is ready to `output`. Throws MediaError.
    void process(std::span<const float> samples, std::vector<float>& output);

  private:
    FilterGraphHandle m_graph;
    AVFilterContext* m_input = nullptr;  ///< the graph's
    AVFilterContext* m_output = nullptr; ///< the graph's
    std::int64_t m_position = 0;         ///< of what is put in
    std::int64_t m_leftOut;              ///< of what comes out and belongs to no place
};

} // namespace vantro::media::av
