#include "capture/CursorTracker.h"

#include "base/Fatal.h"

#include <chrono>

#include <sys/prctl.h>

namespace vantro::capture {
namespace {

// About 62.5 samples a second: one for each frame of the movie. Longer shows as a jerky pointer in
// the edited movie; shorter only makes the list longer.
constexpr base::HostDuration sampleInterval = std::chrono::milliseconds(16);

} // namespace

CursorTracker::CursorTracker(model::Rect captureRect, double screenHeight,
                             std::shared_ptr<PointerSource> pointer, CaptureClock& clock,
                             std::optional<CursorJournal> journal)
    : m_captureRect(captureRect)
    , m_screenHeight(screenHeight)
    , m_pointer(std::move(pointer))
    , m_clock(clock)
    , m_startTime(clock.now())
    , _journal(std::move(journal)) {}

CursorTracker::~CursorTracker() {
    stop();
}

void CursorTracker::start() {
    m_timer = std::jthread([this](const std::stop_token& stop) { runTimer(stop); });
    m_clickMonitor = monitorClicks(MouseButton::left);
    m_rightClickMonitor = monitorClicks(MouseButton::right);
}

void CursorTracker::stop() {
    if (m_timer.joinable()) {
        m_timer.request_stop();
        m_timer.join();
    }
    m_clickMonitor.reset();
    m_rightClickMonitor.reset();
}

std::vector<model::CursorPosition> CursorTracker::positions() {
    return m_queue.sync([this] { return _positions; });
}

std::vector<model::ClickEvent> CursorTracker::clicks() {
    return m_queue.sync([this] { return _clicks; });
}

void CursorTracker::runTimer(const std::stop_token& stop) {
    base::setThreadName("cursor.timer");
    prctl(PR_SET_TIMERSLACK, 1UL); // nanoseconds: exact firing, where the default is 50 µs late
    base::HostTime deadline = m_clock.now();
    do { // one sample at least, however soon the stop comes
        m_queue.sync([this] { appendPosition(); });
        // Ticks that the machine slept through are left out, never caught up in a burst.
        do {
            deadline += sampleInterval;
        } while (deadline <= m_clock.now());
        m_clock.sleepUntil(deadline, stop);
    } while (!stop.stop_requested());
}

void CursorTracker::appendPosition() {
    const model::Point point = pointerInCaptureRect();
    _positions.push_back({.x = point.x, .y = point.y, .timestamp = elapsedSeconds()});
    if (_journal)
        _journal->add(_positions.back());
}

void CursorTracker::appendClick(bool isRightClick) {
    const model::Point point = pointerInCaptureRect();
    model::ClickEvent click;
    click.x = point.x;
    click.y = point.y;
    click.timestamp = elapsedSeconds();
    click.isRightClick = isRightClick;
    _clicks.push_back(click);
    if (_journal)
        _journal->add(click);
}

double CursorTracker::elapsedSeconds() {
    base::HostDuration::rep elapsed = 0;
    const bool overflow = __builtin_sub_overflow(m_clock.now().time_since_epoch().count(),
                                                 m_startTime.time_since_epoch().count(), &elapsed);
    base::require(!overflow && elapsed >= 0, "the host clock ran backwards");
    return base::inSeconds(base::HostDuration(elapsed));
}

model::Point CursorTracker::pointerInCaptureRect() {
    const model::Point mouse = m_pointer->location();
    return {.x = mouse.x - m_captureRect.x, .y = m_screenHeight - mouse.y - m_captureRect.y};
}

std::unique_ptr<ClickMonitor> CursorTracker::monitorClicks(MouseButton button) {
    const bool isRightClick = button == MouseButton::right;
    return m_pointer->monitorPresses(button, [this, isRightClick] {
        m_queue.async([this, isRightClick] { appendClick(isRightClick); });
    });
}

} // namespace vantro::capture
