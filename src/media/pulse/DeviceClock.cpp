#include "media/pulse/DeviceClock.h"

#include "media/values/AudioBuffer.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace vantro::media::pulse {
namespace {

using namespace std::chrono_literals;

constexpr auto believedFor = 1s;
// The first reports settle the clock; after that it only glides, unless the device was changed.
constexpr int settling = 20;
constexpr double step = 0.00025 * mixing::sampleRate;
constexpr double change = 0.02 * mixing::sampleRate;
// They are asked far more often.
constexpr auto standingStill = 400ms;

} // namespace

void DeviceClock::observe(base::HostTime at, double position) {
    if (m_start && position <= m_observed)
        return;
    if (!m_start)
        m_start = at;
    m_observed = position;
    m_moved = at;
    const double host = base::inSeconds(at - *m_start) * mixing::sampleRate;
    m_recent.push_back({at, position - host});
    while (at - m_recent.front().at > believedFor)
        m_recent.pop_front();
    const double least = std::ranges::min_element(m_recent, {}, &Observation::lead)->lead;
    const bool glides = ++m_observations > settling && std::abs(least - m_lead) < change;
    m_lead = glides ? m_lead + std::clamp(least - m_lead, -step, step) : least;
}

std::optional<double> DeviceClock::position(base::HostTime now) {
    if (!m_start || now - m_moved > standingStill)
        return {};
    const double position = base::inSeconds(now - *m_start) * mixing::sampleRate + m_lead;
    m_latest = std::max(m_latest, position);
    return m_latest;
}

void DeviceClock::reset() {
    *this = {};
}

} // namespace vantro::media::pulse
