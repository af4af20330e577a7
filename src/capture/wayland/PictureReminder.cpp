#include "capture/wayland/PictureReminder.h"

#include <algorithm>

namespace vantro::capture::wayland {
namespace {

// A first picture that was sent before the stream stood is lost, at its start or after a change of
// size, and a still screen sends no second one. Compositors send theirs within a few frames.
constexpr base::HostDuration untilAskedAgain = std::chrono::milliseconds(400);
constexpr int mostTimesAsked = 5;

} // namespace

base::HostDuration PictureReminder::longestWait(const std::optional<base::HostTime>& since,
                                                base::HostDuration otherwise) const {
    return since && m_timesAsked < mostTimesAsked ? std::min(otherwise, untilAskedAgain)
                                                  : otherwise;
}

void PictureReminder::turn(const std::optional<base::HostTime>& since,
                           pipewire::VideoStream& stream) {
    const auto now = base::hostNow();
    if (!since)
        m_timesAsked = 0;
    else if (m_timesAsked < mostTimesAsked && now - std::max(*since, m_asked) >= untilAskedAgain) {
        stream.setActive(false);
        stream.setActive(true);
        m_asked = now;
        ++m_timesAsked;
    }
}

} // namespace vantro::capture::wayland
