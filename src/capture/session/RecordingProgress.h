#pragma once

#include "base/Guarded.h"
#include "capture/Recorder.h"
#include "capture/SoundLevel.h"

#include <atomic>
#include <map>

#include <fmt/format.h>

namespace vantro::capture {

/// What a recording's sources count and report. Any thread.
class RecordingProgress {
  public:
    void setRunning(bool isRunning) { m_isRunning = isRunning; }
    void frameCaptured() { ++m_captured; }
    void frameDropped() { ++m_dropped; }
    void webcamFrameCaptured() { ++m_webcamCaptured; }
    void webcamFrameDropped() { ++m_webcamDropped; }
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
    void lost(const std::string& source, const std::string& reason) {
        m_reports.with([&](Reports& reports) { reports.lost[source] = reason; });
    }
    /// A sentence on what is otherwise on this desktop.
    void note(const std::string& sentence) {
        m_reports.with([&](Reports& reports) { reports.notes.push_back(sentence); });
    }
    void returned(const std::string& source) {
        m_reports.with([&](Reports& reports) { reports.lost.erase(source); });
    }
    void sounds(SoundKind kind, const SoundLevel& level) {
        const SoundStatus status{
            .kind = kind, .level = level.level(), .isSilent = level.isSilent()};
        m_reports.with([&](Reports& reports) { reports.sounds.insert_or_assign(kind, status); });
    }

    RecordingStatistics statistics() const {
        const Reports reports = m_reports.with([](const Reports& each) { return each; });
        RecordingStatistics now{.isRunning = m_isRunning,
                                .framesCaptured = m_captured,
                                .framesDropped = m_dropped,
                                .pointerMoves = 0,
                                .webcamFramesCaptured = m_webcamCaptured,
                                .webcamFramesDropped = m_webcamDropped,
                                .condition = reports.condition,
                                .streamError = reports.streamError,
                                .lostSources = {},
                                .notes = reports.notes,
                                .sounds = {}};
        for (const auto& [source, reason] : reports.lost)
            now.lostSources.push_back(fmt::format("{}: {}", source, reason));
        for (const auto& [kind, status] : reports.sounds)
            now.sounds.push_back(status);
        return now;
    }

  private:
    struct Reports {
        RecordingCondition condition = RecordingCondition::recording;
        std::string streamError;
        std::map<std::string, std::string> lost; ///< why, by the name of the source
        std::vector<std::string> notes;
        std::map<SoundKind, SoundStatus> sounds;
    };

    std::atomic<bool> m_isRunning = false;
    std::atomic<std::int64_t> m_captured = 0;
    std::atomic<std::int64_t> m_dropped = 0;
    std::atomic<std::int64_t> m_webcamCaptured = 0;
    std::atomic<std::int64_t> m_webcamDropped = 0;
    base::Guarded<Reports> m_reports;
};

} // namespace vantro::capture
