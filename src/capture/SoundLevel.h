#pragma once

#include "base/HostClock.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>
#include <span>

namespace vantro::capture {

/// How loud a sound is, for meters, and whether it has been silent for so long that something may
/// be wrong. Given the sound by one thread. A value.
class SoundLevel {
  public:
    /// `samples` begin at `at`.
    void take(base::HostTime at, std::span<const float> samples) {
        float peak = 0;
        for (const float sample : samples)
            peak = std::max(peak, std::abs(sample));
        m_level = std::max(peak, m_level * fall);
        if (peak > silence || !m_heard)
            m_heard = at;
        m_latest = at;
    }
    /// The highest of the latest pieces, falling; 1 is full scale.
    float level() const { return std::min(m_level, 1.0F); }
    bool isSilent() const { return m_heard && m_latest - *m_heard >= longSilence; }

  private:
    // Between two looks at a meter a peak stays visible; pieces are about 40 ms long.
    static constexpr float fall = 0.85F;
    // −66 dB: a microphone that works has more noise than that, one that is muted has none.
    static constexpr float silence = 0.0005F;
    static constexpr std::chrono::seconds longSilence{5};

    float m_level = 0;
    std::optional<base::HostTime> m_heard;
    base::HostTime m_latest;
};

} // namespace vantro::capture
