#pragma once

#include "base/HostClock.h"

namespace vantro::capture::pictures {

/// Decides when a stream may take its next frame: evenly, on a grid of deadlines one interval
/// apart, and at once when the last frame is longer ago. A value; instants are arguments.
class FramePacer {
  public:
    explicit FramePacer(base::HostDuration interval) : m_interval(interval) {}

    /// The earliest instant for the next frame; in the past before the first.
    base::HostTime nextDeadline() const { return m_deadline; }

    void frameTaken(base::HostTime now) {
        // A little late is a thread that woke late: the grid stays, or every delay would lower the
        // rate for good. Later than that the screen has rested, and a new grid begins.
        const bool onGrid = now - m_deadline < m_interval / 4;
        m_deadline = (onGrid ? m_deadline : now) + m_interval;
    }

  private:
    base::HostDuration m_interval;
    base::HostTime m_deadline;
};

} // namespace vantro::capture::pictures
