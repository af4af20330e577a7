#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vantro::capture::sound {

/// Stretches sound by tiny amounts that may change at any time, without a jump: each output sample
/// is read between the input samples by a windowed sinc of 32 taps. One thread at a time.
class Resampler {
  public:
    explicit Resampler(int channels);

    /// Appends to `output` what the input up to and with `input` gives, both interleaved. What is
    /// no number counts as silence: it would spread, and no encoder takes it.
    /// `stretch`: by which part the output is longer than the input, much less than one.
    void process(std::span<const float> input, double stretch, std::vector<float>& output);
    /// The place in the whole input of the next output sample, in frames.
    double position() const { return static_cast<double>(m_begin) + m_next; }

  private:
    void read(double place, float* frame) const;

    const int m_channels;
    std::vector<std::vector<float>> m_waiting; ///< of each channel, from m_begin on
    std::int64_t m_begin;                      ///< of what waits, in the whole input
    double m_next;                             ///< relative to m_begin
};

} // namespace vantro::capture::sound
