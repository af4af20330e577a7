#pragma once

#include "capture/Recorder.h"

namespace vantro::capture {

/// Notices that a recording goes on though nothing has happened in it for long: somebody may have
/// forgotten it. A value.
class StillnessWatch {
  public:
    /// Seconds. Reading a page takes minutes; a recording that was forgotten goes on for hours.
    static constexpr double longestRest = 600;

    /// True once when neither picture nor pointer have changed for that long, and again only after
    /// they have. `recorded`: seconds of the recording so far, ascending.
    bool hasRested(double recorded, const RecordingStatistics& statistics) {
        if (statistics.framesCaptured != m_frames || statistics.pointerMoves != m_moves) {
            m_frames = statistics.framesCaptured;
            m_moves = statistics.pointerMoves;
            m_since = recorded;
            m_isTold = false;
        }
        const bool isNews = !m_isTold && recorded - m_since >= longestRest;
        m_isTold = m_isTold || isNews;
        return isNews;
    }

  private:
    std::int64_t m_frames = 0;
    std::int64_t m_moves = 0;
    double m_since = 0; ///< seconds of the recording
    bool m_isTold = false;
};

} // namespace vantro::capture
