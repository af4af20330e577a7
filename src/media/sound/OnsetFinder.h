#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace vantro::media::sound {

/// Gives the samples from `position` on; positions before 0 and behind the end are silent.
using SampleReader = std::function<void(std::int64_t position, std::span<float> samples)>;

/// Finds where something sudden begins in sound: a click, a beep, a word. Looks at every sample
/// once, from the first on. Stereo in the mix format, interleaved. One thread at a time.
class OnsetFinder {
  public:
    explicit OnsetFinder(SampleReader source);

    /// The first onset at or behind `from` and before `to`. Both never go back from call to call.
    std::optional<std::int64_t> firstBetween(std::int64_t from, std::int64_t to);

  private:
    void scanOn();
    bool isSudden(double energy) const;

    SampleReader m_source;
    std::vector<float> m_sound;           ///< one step of it
    std::vector<double> m_recent;         ///< energies of the steps before, a ring
    std::int64_t m_steps = 0;             ///< looked at
    std::optional<std::int64_t> m_latest; ///< onset
    std::vector<std::int64_t> m_onsets;   ///< not yet passed by `from`
};

} // namespace vantro::media::sound
