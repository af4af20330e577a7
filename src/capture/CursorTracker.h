#pragma once

#include "base/SerialQueue.h"
#include "capture/CaptureClock.h"
#include "capture/CursorJournal.h"
#include "capture/PointerSource.h"
#include "model/RecordingMetadata.h"

#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace vantro::capture {

/// Records where the pointer is, every 16 ms, and every press of the left and right button, for the
/// length of one recording.
///
/// Time zero of every timestamp is the construction. Positions are points from the capture
/// rectangle's top-left corner, y downward; those outside of it are kept as they are.
///
/// Lifecycle: constructed → start → stop; not started again. The timer's thread and the click
/// monitors only hand work to the serial queue "com.vantro.cursor", which alone touches both lists;
/// whoever reads them waits for it. Reports no errors: a button that cannot be watched yields no
/// clicks. A clock that runs backwards is fatal. One thread constructs, starts and stops it.
class CursorTracker {
  public:
    /// `captureRect` is in global points with the origin at the top left. `screenHeight`, in
    /// points, turns the pointer's bottom-left origin over.
    /// Samples and clicks go to the `journal` too, where there is one.
    CursorTracker(model::Rect captureRect, double screenHeight,
                  std::shared_ptr<PointerSource> pointer, CaptureClock& clock = hostCaptureClock(),
                  std::optional<CursorJournal> journal = {});
    ~CursorTracker();
    CursorTracker(const CursorTracker&) = delete;
    CursorTracker& operator=(const CursorTracker&) = delete;

    void start();
    /// Harmless when repeated.
    void stop();

    /// A copy of everything recorded so far. Any thread but the tracker's own.
    std::vector<model::CursorPosition> positions();
    std::vector<model::ClickEvent> clicks();

  private:
    void runTimer(const std::stop_token& stop);
    void appendPosition();
    void appendClick(bool isRightClick);
    double elapsedSeconds();
    model::Point pointerInCaptureRect();
    std::unique_ptr<ClickMonitor> monitorClicks(MouseButton button);

    const model::Rect m_captureRect;
    const double m_screenHeight;
    const std::shared_ptr<PointerSource> m_pointer;
    CaptureClock& m_clock;
    const base::HostTime m_startTime;

    std::vector<model::CursorPosition> _positions; // only on m_queue
    std::vector<model::ClickEvent> _clicks;        // only on m_queue
    std::optional<CursorJournal> _journal;         // only on m_queue

    // Destroyed in reverse: whoever feeds the queue first, then the queue, then the lists.
    base::SerialQueue m_queue{"com.vantro.cursor"};
    std::unique_ptr<ClickMonitor> m_clickMonitor;
    std::unique_ptr<ClickMonitor> m_rightClickMonitor;
    std::jthread m_timer;
};

} // namespace vantro::capture
