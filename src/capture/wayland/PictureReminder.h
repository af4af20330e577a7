#pragma once

#include "base/HostClock.h"
#include "pipewire/VideoStream.h"

#include <optional>

namespace vantro::capture::wayland {

/// Gets the first picture out of a sender that owes one, at a stream's start or after a change of
/// size. On the stream's thread.
class PictureReminder {
  public:
    /// To be called about every `interval` while a picture is awaited; `since` when, nothing once
    /// it has come.
    void turn(const std::optional<base::HostTime>& since, pipewire::VideoStream& stream);
    /// How long the thread may wait before the next `turn`.
    base::HostDuration longestWait(const std::optional<base::HostTime>& since,
                                   base::HostDuration otherwise) const;

  private:
    std::optional<base::HostTime> m_since; // the wait that is counted
    base::HostTime m_asked;
    int m_timesAsked = 0;
};

} // namespace vantro::capture::wayland
