#include "capture/x11/X11PointerSource.h"

#include "base/SerialQueue.h"

#include <sys/prctl.h>

namespace vantro::capture::x11 {
namespace {

// What the tracker keeps: asking more often only costs time.
constexpr base::HostDuration askingInterval = std::chrono::milliseconds(16);

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
        while (const XcbEvent event = m_presses.nextEvent()) {
            m_place.handle(*event);
            // The server does not say where the pointer was at the press; its answer comes within
            // a millisecond.
            if (const auto press = m_presses.handle(*event))
                if (const auto place = m_place.pointer())
                    output.pressed({.time = press->time, .button = press->button, .place = place});
        }
        if (m_connection.isLost())
            return output.pointerStopped("the connection to the display was lost");
        if (base::hostNow() < deadline) {
            m_connection.wait(m_wakeUp.fd(), deadline);
            continue;
        }
        if (const auto sample = ask())
            output.pointerAt(*sample);
        do {
            deadline += askingInterval;
        } while (deadline <= base::hostNow());
    }
}

} // namespace vantro::capture::x11
