#pragma once

#include "base/Guarded.h"
#include "capture/Recorder.h"

#include <atomic>

namespace vantro::capture {

/// What a recording's sources count and report. Any thread.
class RecordingProgress {
  public:
    void setRunning(bool isRunning) { m_isRunning = isRunning; }
    void frameCaptured() { ++m_captured; }
    void frameDropped() { ++m_dropped; }
    std::int64_t framesCaptured() const { return m_captured; }

    /// The recording cannot go on; the first reason counts.
    void ended(RecordingCondition condition, const std::string& error = {}) {
        m_reports.with([&](Reports& reports) {
            if (reports.condition == RecordingCondition::recording)
                reports.condition = condition;
            if (condition == RecordingCondition::streamStopped)
                reports.streamError = error;
        });
    }
    /// A source that the recording can do without takes no part, or no longer.
    void lost(const std::string& sourceAndReason) {
        m_reports.with([&](Reports& reports) { reports.lost.push_back(sourceAndReason); });
    }

    RecordingStatistics statistics() const {
        const Reports reports = m_reports.with([](const Reports& each) { return each; });
        return {.isRunning = m_isRunning,
                .framesCaptured = m_captured,
                .framesDropped = m_dropped,
                .condition = reports.condition,
                .streamError = reports.streamError,
                .lostSources = reports.lost};
    }

  private:
    struct Reports {
        RecordingCondition condition = RecordingCondition::recording;
        std::string streamError;
        std::vector<std::string> lost;
    };

    std::atomic<bool> m_isRunning = false;
    std::atomic<std::int64_t> m_captured = 0;
    std::atomic<std::int64_t> m_dropped = 0;
    base::Guarded<Reports> m_reports;
};

} // namespace vantro::capture
