#include "window/devices/SourceMeter.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace vantro::window::devices {
namespace {

// Long enough to be read.
constexpr auto peakHold = std::chrono::milliseconds(1500);

int decibels(float level) {
    if (level <= 0)
        return SourceMeter::lowest;
    const auto value = std::lround(20 * std::log10(level));
    return static_cast<int>(std::clamp<long>(value, SourceMeter::lowest, 0));
}

} // namespace

void SourceMeter::show(const std::optional<capture::SoundMeter::Reading>& reading,
                       base::HostTime now) {
    Shown next;
    if (reading) {
        const int level = decibels(reading->level);
        const bool isHeld = m_shown.isShown && level < m_shown.peak && now - m_peakAt < peakHold;
        if (!isHeld)
            m_peakAt = now;
        next = {.isShown = true,
                .level = level,
                .peak = isHeld ? m_shown.peak : level,
                .isSilent = reading->isSilent};
    }
    if (next == m_shown)
        return;
    m_shown = next;
    Q_EMIT changed();
}

} // namespace vantro::window::devices
