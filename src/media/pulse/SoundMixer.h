#pragma once

#include "media/values/TrackMix.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vantro::media::pulse {

/// A short stretch of what is heard: for each track its samples, interleaved. They are kept apart
/// until the device asks for them, so that a volume is heard at once.
struct SoundBlock {
    std::int64_t start = 0; ///< heard samples since playing began
    std::int64_t frames = 0;
    std::vector<std::vector<float>> tracks;

    std::int64_t end() const { return start + frames; }
};

/// Adds tracks up by their volumes, which glide. Not thread-safe.
class SoundMixer {
  public:
    static constexpr std::int64_t fadeLength = 240; ///< samples; 5 ms pass for no click

    explicit SoundMixer(std::size_t trackCount)
        : m_volumes(trackCount, 1), m_gains(trackCount, 1) {}

    void setMix(const std::vector<TrackMix>& mix);
    void setMuted(bool muted) { m_muted = muted; }

    /// Fills `mix` from frame `first` of a block on.
    void mix(const SoundBlock& block, std::int64_t first, std::span<float> mix);
    /// What was mixed last, dying away.
    std::array<float, fadeLength * 2> lastDyingAway() const;
    /// The next sample follows silence: it is faded in.
    void riseFromSilence();

  private:
    std::vector<float> m_volumes;
    std::vector<float> m_gains; ///< on their way to the volumes
    bool m_muted = false;
    float m_level = 1; ///< on its way to 1
    std::array<float, 2> m_last{};
};

} // namespace vantro::media::pulse
