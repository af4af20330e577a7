#include "capture/x11/input/X11PointerSource.h"

#include "base/Fatal.h"
#include "base/SerialQueue.h"

#include <sys/prctl.h>

namespace vantro::capture::x11 {
namespace {

// What the tracker keeps: asking more often only costs time.
constexpr base::HostDuration askingInterval = std::chrono::milliseconds(16);
// A program that puts the pointer elsewhere is no motion: such a jump may be told this late.
constexpr base::HostDuration restingInterval = std::chrono::milliseconds(100);
// Answers, a quarter of a second: fewer would ask the server for events at each short stop of a
// hand.
constexpr int unchangedAtRest = 16;

} // namespace

X11PointerSource::X11PointerSource(X11Connection connection, const RecordingTarget& target,
                                   IsOwnProcess isOwnProcess)
    : m_connection(std::move(connection))
    , m_place(m_connection, target)
    , m_presses(m_connection, std::move(isOwnProcess)) {}

X11PointerSource::~X11PointerSource() {
    stop();
}

void X11PointerSource::start(PointerOutput& output) {
    if (const auto sample = ask())
        output.pointerAt(*sample);
    m_thread = std::jthread([this, &output](const std::stop_token& stop) { run(stop, output); });
}

void X11PointerSource::stop() {
    if (!m_thread.joinable())
        return;
    m_thread.request_stop();
    m_wakeUp.ring();
    m_thread.join();
}

std::optional<PointerSample> X11PointerSource::ask() {
    const auto place = m_place.pointer();
    if (!place)
        return {};
    return PointerSample{.time = base::hostNow(), .place = *place};
}

void X11PointerSource::run(const std::stop_token& stop, PointerOutput& output) {
    base::setThreadName("cursor.pointer");
    prctl(PR_SET_TIMERSLACK, 1UL); // nanoseconds: exact firing, where the default is 50 µs late
    base::HostTime deadline = base::hostNow() + askingInterval;
    while (!stop.stop_requested()) {
        const bool hasNews = takeEvents(output);
        if (m_connection.isLost())
            return output.pointerStopped("the connection to the display was lost");
        const State before = m_state;
        if (hasNews && m_state == State::resting)
            advance(State::moving);
        else if (base::hostNow() < deadline) {
            m_connection.wait(m_wakeUp.fd(), deadline);
            continue;
        }
        tell(output);
        if (m_state != before)
            deadline = base::hostNow();
        do {
            deadline += m_state == State::moving ? askingInterval : restingInterval;
        } while (deadline <= base::hostNow());
    }
}

/// True when there were any.
bool X11PointerSource::takeEvents(PointerOutput& output) {
    bool hasTaken = false;
    while (const XcbEvent event = m_presses.nextEvent()) {
        hasTaken = true;
        m_place.handle(*event);
        // The server does not say where the pointer was at the press; its answer comes within a
        // millisecond.
        if (const auto press = m_presses.handle(*event))
            if (const auto place = m_place.pointer())
                output.pressed({.time = press->time, .button = press->button, .place = place});
    }
    return hasTaken;
}

/// Asks the server, and once more after the pointer has come to rest: it may have moved before the
/// server tells of motion.
void X11PointerSource::tell(PointerOutput& output) {
    const auto sample = ask();
    if (!sample)
        return;
    const bool isNew = m_newest != sample->place;
    m_newest = sample->place;
    m_unchanged = isNew ? 0 : m_unchanged + 1;
    if (isNew && m_state == State::resting)
        advance(State::moving);
    if (m_state == State::moving)
        output.pointerAt(*sample);
    if (m_state == State::moving && m_unchanged >= unchangedAtRest && m_presses.isWatching()) {
        advance(State::resting);
        tell(output);
    }
}

void X11PointerSource::advance(State to) {
    base::require(m_state != to, "the pointer rests twice");
    m_state = to;
    m_unchanged = 0;
    m_presses.watchMotion(to == State::resting);
}

} // namespace vantro::capture::x11
