#include "capture/wayland/cast/PictureReminder.h"

#include "capture/wayland/compositor/ScreenRedraw.h"

#include <algorithm>

namespace vantro::capture::wayland {
namespace {

// Compositors send a picture within a few frames of the start. Later than this one is missing:
//  - wlroots' portal waits for the screen to change, also for a first picture. A new drawing helps,
//    and comes first, since a portal that is asked anew loses the picture that it waits for.
//  - What was sent before the stream stood is lost, and a still screen sends no second one. Asking
//    again helps.
constexpr base::HostDuration interval = std::chrono::milliseconds(200);
constexpr int mostReminders = 10;
// A compositor answers within a frame, unless it is busy starting something.
constexpr base::HostDuration longestAnswer = std::chrono::milliseconds(200);

} // namespace

base::HostDuration PictureReminder::longestWait(const std::optional<base::HostTime>& since,
                                                base::HostDuration otherwise) const {
    return since && (since != m_since || m_reminders < mostReminders)
               ? std::min(otherwise, interval)
               : otherwise;
}

void PictureReminder::turn(const std::optional<base::HostTime>& since,
                           pipewire::VideoStream& stream) {
    if (m_since != since) {
        m_since = since;
        m_reminders = 0;
    }
    const auto now = base::hostNow();
    if (!since || m_reminders == mostReminders || now - std::max(*since, m_last) < interval)
        return;
    m_last = now;
    if (m_reminders++ % 2 == 0) {
        m_canRedraw = m_canRedraw && redrawScreens(longestAnswer);
    } else {
        stream.setActive(false);
        stream.setActive(true);
    }
}

} // namespace vantro::capture::wayland
