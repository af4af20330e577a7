#include "capture/sound/SampleTimes.h"

#include "media/values/AudioBuffer.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace vantro::capture::sound {
namespace {

using namespace std::chrono_literals;
using media::mixing::sampleRate;

constexpr auto believedFor = 1s;
// Where a busy machine lets few come.
constexpr std::size_t leastKept = 8;
constexpr auto settling = 200ms;
constexpr std::size_t leastToSettle = 8;

} // namespace

void SampleTimes::observe(base::HostTime now, std::int64_t position, base::HostTime at) {
    if (isEmpty()) {
        m_start = at;
        m_first = now;
        m_startPosition = position;
    }
    const double sinceStart = static_cast<double>(position - m_startPosition) / sampleRate;
    m_recent.push_back({now, base::inSeconds(at - m_start) - sinceStart});
    while (m_recent.size() > leastKept && now - m_recent.front().now > believedFor)
        m_recent.pop_front();
    m_least = std::ranges::min_element(m_recent, {}, &Observation::lateness)->lateness;
}

bool SampleTimes::isSettled() const {
    return m_recent.size() >= leastToSettle && m_recent.back().now - m_first >= settling;
}

base::HostTime SampleTimes::timeOf(double position) const {
    const double seconds = (position - static_cast<double>(m_startPosition)) / sampleRate + m_least;
    return m_start + base::HostDuration(std::llround(seconds * 1e9));
}

} // namespace vantro::capture::sound
