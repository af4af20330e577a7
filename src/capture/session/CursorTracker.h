#pragma once

#include "base/Guarded.h"
#include "capture/CaptureClock.h"
#include "capture/PointerSource.h"
#include "capture/session/CursorJournal.h"
#include "capture/session/RecordingClock.h"
#include "model/RecordingMetadata.h"

#include <atomic>
#include <functional>
#include <optional>
#include <thread>
#include <vector>

namespace vantro::capture {

/// Keeps where the pointer was, at least every 16 ms of the movie, and every press of the left and
/// right button, for the length of one recording.
///
/// Each place that a source pushes is kept with its own time, but not more often than that; where
/// none comes, the newest stands for it. What lies outside of the movie's time is left out; the
/// newest place before its zero is its first.
///
/// Lifecycle: constructed → start → stop. One thread constructs, starts and stops it; its output
/// may be called and its lists read on any other.
class CursorTracker final : public PointerOutput {
  public:
    /// Samples and clicks go to the `journal` too, where there is one. `timeline` and both others
    /// outlive the tracker.
    explicit CursorTracker(const SharedRecordingClock& timeline, CursorJournal* journal = nullptr,
                           CaptureClock& clock = hostCaptureClock());
    ~CursorTracker() override;
    CursorTracker(const CursorTracker&) = delete;
    CursorTracker& operator=(const CursorTracker&) = delete;

    /// Called with the reason, on the source's thread, when the pointer's place or its clicks are
    /// not known; `what` is for the user. Before the start.
    using OnUnknown = std::function<void(const char* what, const std::string& why)>;
    void setOnUnknown(OnUnknown told) { m_onUnknown = std::move(told); }
    /// Where clicks count while the pointer's place is not known. Before the start.
    void setPlaceOfUnknown(model::Point place) { m_placeOfUnknown = place; }
    void start();
    /// The newest place counts until `at`, which is the movie's end. Harmless when repeated.
    void stop(base::HostTime at);
    /// Keeps the newest place for `time`, whatever has been pushed since, if none is kept there.
    void keepNewest(base::HostTime time);
    // The movie pauses at that instant, and goes on. The newest place counts until the one and from
    // the other on, so that the pointer does not glide from where it was to where it is.
    void paused(base::HostTime at);
    void resumed(base::HostTime at) { keepNewest(at); }

    void pointerAt(const PointerSample& sample) override;
    void pressed(const PointerPress& press) override;
    void pointerUnknown(const std::string& why) override;
    void pressesUnknown(const std::string& why) override;
    void pointerStopped(const std::string& error) override;

    /// How often the pointer has changed its place or a button was pressed.
    std::int64_t moves() const { return m_moves; }
    /// Copies of everything recorded so far.
    std::vector<model::CursorPosition> positions() const;
    std::vector<model::ClickEvent> clicks() const;

  private:
    struct Records {
        std::optional<model::Point> newest;
        std::vector<model::CursorPosition> positions;
        bool isLastPushed = false; ///< the last position came from the source
        std::vector<model::ClickEvent> clicks;

        /// The position, if it is kept.
        std::optional<model::CursorPosition> keep(model::Point place, double timestamp,
                                                  double leastGap, bool isPushed);
    };

    void runTimer(const std::stop_token& stop);
    std::optional<double> timestampOf(base::HostTime time) const;
    void note(const std::optional<model::CursorPosition>& kept);

    const SharedRecordingClock& m_timeline;
    CursorJournal* m_journal;
    CaptureClock& m_clock;
    OnUnknown m_onUnknown;
    model::Point m_placeOfUnknown;
    base::Guarded<Records> m_records;
    std::atomic<std::int64_t> m_moves = 0;
    std::jthread m_timer;
};

} // namespace vantro::capture
