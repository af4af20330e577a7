#include "capture/wayland/clicks/PointerTrail.h"

#include <algorithm>
#include <iterator>

namespace vantro::capture::wayland {
namespace {

// A tap is told of a fifth of a second late; a busy machine needs more.
constexpr base::HostDuration longestKept = std::chrono::seconds(2);
// Some desktops tell of each of a mouse's moves, up to a thousand a second.
constexpr std::size_t mostKept = 4096;
// While the pointer moves its places come at most two pictures of 60 Hz apart. What is further
// apart was rest, and then a first move, so the line counts only that long before its end.
constexpr base::HostDuration longestMove = std::chrono::milliseconds(34);

} // namespace

void PointerTrail::note(const PointerSample& sample) {
    m_samples.push_back(sample);
    while (m_samples.size() > mostKept || (m_samples.size() > 2 && // one from before is needed
                                           sample.time - m_samples[1].time > longestKept))
        m_samples.pop_front();
}

std::optional<model::Point> PointerTrail::placeAt(base::HostTime when) const {
    if (m_samples.empty())
        return {};
    const auto after = std::ranges::upper_bound(m_samples, when, {}, &PointerSample::time);
    if (after == m_samples.begin() || after == m_samples.end())
        return after == m_samples.end() ? m_samples.back().place : after->place;
    const PointerSample& before = *std::prev(after);
    const auto start = std::max(before.time, after->time - longestMove);
    const double share = std::max(0.0, base::inSeconds(when - start)) /
                         base::inSeconds(after->time - start); // later than `when`, so above zero
    return model::Point{before.place.x + (after->place.x - before.place.x) * share,
                        before.place.y + (after->place.y - before.place.y) * share};
}

} // namespace vantro::capture::wayland
