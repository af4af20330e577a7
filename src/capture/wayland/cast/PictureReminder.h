#pragma once

#include "base/HostClock.h"
#include "pipewire/VideoStream.h"

#include <optional>

namespace vantro::capture::wayland {

/// Gets the first picture out of a sender that owes one, at a stream's start or after a change of
/// size. A few seconds, then it gives up. On the stream's thread.
class PictureReminder {
  public:
    /// To be called when `longestWait` is over, or sooner. `since` says from when on a picture is
    /// awaited; nothing: it has come. May wait for the compositor, for part of a second at most.
    void turn(const std::optional<base::HostTime>& since, pipewire::VideoStream& stream);
    base::HostDuration longestWait(const std::optional<base::HostTime>& since,
                                   base::HostDuration otherwise) const;

  private:
    std::optional<base::HostTime> m_since; // the wait that is counted
    base::HostTime m_last;                 // reminder
    int m_reminders = 0;                   // of this wait
    bool m_canRedraw = true;
};

} // namespace vantro::capture::wayland
