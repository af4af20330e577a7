#pragma once

#include "media/av/Handles.h"

#include <cstdint>
#include <vector>

namespace vantro::media::av {

/// Turns decoded sound of any kind into the mix format. One thread at a time.
///
/// More than two channels are mixed down so that they cannot clip; one is given to both sides
/// unchanged. Sound with a new rate or layout is taken as it comes.
class AudioConverter {
  public:
    /// Appends what is ready to `output`; some samples stay behind until `drain`. Throws MediaError
    /// for sound that cannot be converted.
    void convert(const AVFrame& frame, std::vector<float>& output);
    /// Appends what stayed behind. What follows starts anew.
    void drain(std::vector<float>& output);
    /// Forgets what stayed behind.
    void reset() { m_resampler.reset(); }
    /// Whether a frame can go on where the last one ended without losing what stayed behind.
    bool fits(const AVFrame& frame) const;
    /// How many samples of the output stayed behind.
    std::int64_t heldBack() const;

  private:
    void open(const AVFrame& frame);
    void run(const AVFrame* frame, std::vector<float>& output);

    ResamplerHandle m_resampler; ///< none between stretches
    int m_inputRate = 0;
    int m_inputFormat = -1;
    int m_inputChannels = 0;
};

} // namespace vantro::media::av
