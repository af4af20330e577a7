#pragma once

#include "media/values/MediaTime.h"

#include <condition_variable>
#include <mutex>
#include <optional>

namespace vantro::media::writing {

/// How far a movie's pictures are written, so that its sound can follow and both lie side by side.
/// Any thread.
class TrackPace {
  public:
    void reach(MediaTime time);
    /// The pictures end here.
    void end(MediaTime time);
    /// Lets everyone who waits, now or later, go.
    void release();

    /// Waits until `time` is reached; the end once it is known.
    std::optional<MediaTime> waitFor(MediaTime time);
    /// Waits until more than `time` is written and says how much; nothing once the pictures have
    /// ended or everyone was let go.
    std::optional<MediaTime> waitBeyond(MediaTime time);

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    MediaTime m_reached;            // guarded by m_mutex
    std::optional<MediaTime> m_end; // guarded by m_mutex
    bool m_released = false;        // guarded by m_mutex
};

} // namespace vantro::media::writing
