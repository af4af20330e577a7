#include "capture/session/CursorTracker.h"

#include "base/Log.h"
#include "base/SerialQueue.h"

#include <chrono>
#include <utility>

namespace vantro::capture {
namespace {

// About 62.5 samples a second: one for each frame of the movie. Longer shows as a jerky pointer in
// the edited movie; shorter only makes the list longer.
constexpr base::HostDuration sampleInterval = std::chrono::milliseconds(16);

// Both a source and the timer may be late by a little: what is due counts as due a quarter of an
// interval early, and a source that pushes is waited for by half of one.
const double leastGap = base::inSeconds(sampleInterval) * 3 / 4;
const double longestWait = base::inSeconds(sampleInterval) * 3 / 2;

// The last place before a pause lies so long before it: the instant itself belongs to the place
// after it, and times ascend.
constexpr base::HostDuration beforePause = std::chrono::microseconds(1);

} // namespace

CursorTracker::CursorTracker(const SharedRecordingClock& timeline, CursorJournal* journal,
                             CaptureClock& clock)
    : m_timeline(timeline), m_journal(journal), m_clock(clock) {}

CursorTracker::~CursorTracker() = default;

void CursorTracker::start() {
    m_timer = std::jthread([this](const std::stop_token& stop) { runTimer(stop); });
}

void CursorTracker::stop(base::HostTime at) {
    if (!m_timer.joinable())
        return;
    m_timer.request_stop();
    m_timer.join();
    keepNewest(at);
}

std::vector<model::CursorPosition> CursorTracker::positions() const {
    return m_records.with([](const Records& records) { return records.positions; });
}

std::vector<model::ClickEvent> CursorTracker::clicks() const {
    return m_records.with([](const Records& records) { return records.clicks; });
}

std::optional<double> CursorTracker::timestampOf(base::HostTime time) const {
    const auto movieTime =
        m_timeline.with([time](const RecordingClock& clock) { return clock.movieTime(time); });
    return movieTime ? std::optional(base::inSeconds(*movieTime)) : std::nullopt;
}

/// Whoever is late is left out, so that times ascend.
std::optional<model::CursorPosition>
CursorTracker::Records::keep(model::Point place, double timestamp, double gap, bool isPushed) {
    if (!positions.empty() &&
        (timestamp <= positions.back().timestamp || timestamp - positions.back().timestamp < gap))
        return {};
    isLastPushed = isPushed;
    return positions.emplace_back(
        model::CursorPosition{.x = place.x, .y = place.y, .timestamp = timestamp});
}

void CursorTracker::note(const std::optional<model::CursorPosition>& kept) {
    if (kept && m_journal != nullptr)
        m_journal->add(*kept);
}

void CursorTracker::pointerAt(const PointerSample& sample) {
    const auto timestamp = timestampOf(sample.time);
    note(m_records.with([&](Records& records) {
        if (std::exchange(records.newest, sample.place) != sample.place)
            ++m_moves;
        return timestamp ? records.keep(sample.place, *timestamp, leastGap, true) : std::nullopt;
    }));
}

void CursorTracker::keepNewest(base::HostTime time) {
    const auto timestamp = timestampOf(time);
    note(m_records.with([&](Records& records) {
        return timestamp && records.newest ? records.keep(*records.newest, *timestamp, 0, false)
                                           : std::nullopt;
    }));
}

void CursorTracker::paused(base::HostTime at) {
    keepNewest(at - beforePause);
    if (m_journal != nullptr)
        m_journal->flush();
}

void CursorTracker::runTimer(const std::stop_token& stop) {
    base::setThreadName("com.vantro.cursor");
    base::HostTime deadline = m_clock.now();
    while (!stop.stop_requested()) {
        // Ticks that the machine slept through are left out, never caught up in a burst.
        do {
            deadline += sampleInterval;
        } while (deadline <= m_clock.now());
        m_clock.sleepUntil(deadline, stop);
        const auto timestamp = timestampOf(m_clock.now());
        if (stop.stop_requested() || !timestamp)
            continue;
        note(m_records.with([&](Records& records) {
            return records.newest
                       ? records.keep(*records.newest, *timestamp,
                                      records.isLastPushed ? longestWait : leastGap, false)
                       : std::nullopt;
        }));
    }
}

void CursorTracker::pressed(const PointerPress& press) {
    ++m_moves;
    const auto timestamp = timestampOf(press.time);
    if (!timestamp)
        return;
    const auto click = m_records.with([&](Records& records) {
        const model::Point place = press.place.value_or(records.newest.value_or(m_placeOfUnknown));
        model::ClickEvent made;
        made.x = place.x;
        made.y = place.y;
        made.timestamp = *timestamp;
        made.isRightClick = press.button == MouseButton::right;
        return records.clicks.emplace_back(made);
    });
    if (m_journal != nullptr)
        m_journal->add(click);
}

void CursorTracker::pointerUnknown(const std::string& why) {
    base::logWarning("The pointer is not recorded: {}", why);
    if (m_onUnknown)
        m_onUnknown("Pointer", why);
}

void CursorTracker::pressesUnknown(const std::string& why) {
    base::logWarning("Clicks are not recorded any more: {}", why);
    if (m_onUnknown)
        m_onUnknown("Clicks", why);
}

void CursorTracker::pointerStopped(const std::string& error) {
    base::logWarning("The pointer is not followed any more: {}", error);
}

} // namespace vantro::capture
