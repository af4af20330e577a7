#include "media/pulse/DeviceClock.h"

#include "media/values/AudioBuffer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <vector>

namespace vantro::media::pulse {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t keptObservations = 16;
constexpr auto keptFor = 2s;
// Servers report ten times a second.
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
    while (m_recent.size() > keptObservations || at - m_recent.front().at > keptFor)
        m_recent.pop_front();
    std::vector<double> leads;
    for (const auto& each : m_recent)
        leads.push_back(each.lead);
    std::ranges::nth_element(leads, leads.begin() + static_cast<std::ptrdiff_t>(leads.size() / 2));
    m_lead = leads[leads.size() / 2];
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
