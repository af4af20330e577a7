#include "capture/wayland/clicks/PlacedPresses.h"

#include "base/Log.h"
#include "base/SerialQueue.h"

#include <algorithm>
#include <array>
#include <utility>

#include <poll.h>

namespace vantro::capture::wayland {
namespace {

// What the screen cast says of the pointer at the time of a press comes with its next pictures, and
// so does the press to our own windows. Longer only delays.
constexpr base::HostDuration untilPlaceIsKnown = std::chrono::milliseconds(50);

base::HostTime hostTimeOf(const clicks::PressRecord& press) {
    return base::HostTime(std::chrono::microseconds(press.time));
}

} // namespace

PlacedPresses::PlacedPresses(std::unique_ptr<PressReader> reader, PointerOutput& output,
                             const OwnPresses& own)
    : m_reader(std::move(reader)), m_output(output), m_own(own) {
    if (m_reader)
        m_thread = std::jthread([this](const std::stop_token& stop) { run(stop); });
}

PlacedPresses::~PlacedPresses() {
    m_thread.request_stop();
    m_wakeUp.ring();
}

void PlacedPresses::pointerAt(const PointerSample& sample) {
    m_trail.with([&](PointerTrail& trail) { trail.note(sample); });
    m_output.pointerAt(sample);
}

void PlacedPresses::run(const std::stop_token& stop) {
    base::setThreadName("com.vantro.clicks");
    bool isThereMore = true;
    while (isThereMore && !stop.stop_requested()) {
        if (waitForPresses())
            isThereMore = take();
        tellUntil(base::hostNow() - untilPlaceIsKnown);
    }
    if (!(isThereMore && take()))
        m_output.pressesUnknown("the service that tells of them has ended");
    tellUntil(base::HostTime::max());
}

/// Or until one that waits is to be told of. True when some have come.
bool PlacedPresses::waitForPresses() {
    std::array<pollfd, 2> waited{{{.fd = m_reader->fd(), .events = POLLIN, .revents = 0},
                                  {.fd = m_wakeUp.fd(), .events = POLLIN, .revents = 0}}};
    int longest = -1; // milliseconds
    if (!m_waiting.empty()) {
        const auto left = m_waiting.front().time + untilPlaceIsKnown - base::hostNow();
        longest = static_cast<int>(
            std::max(std::chrono::ceil<std::chrono::milliseconds>(left).count(), std::int64_t{0}));
    }
    poll(waited.data(), waited.size(), longest);
    return waited[0].revents != 0;
}

/// False where no more will come.
bool PlacedPresses::take() {
    const auto presses = m_reader->take();
    if (!presses)
        return false;
    for (const auto& press : *presses) {
        if (hostTimeOf(press) < m_start)
            continue; // between recordings nobody takes them
        if ((press.flags & clicks::PressRecord::lost) != 0 && !std::exchange(m_isLossTold, true))
            base::logWarning("Some clicks were lost: there were too many at once");
        m_waiting.push_back({.time = hostTimeOf(press),
                             .button = press.button == clicks::Button::right ? MouseButton::right
                                                                             : MouseButton::left,
                             .place = {}});
    }
    return true;
}

void PlacedPresses::tellUntil(base::HostTime pressedBefore) {
    while (!m_waiting.empty() && m_waiting.front().time <= pressedBefore) {
        PointerPress press = m_waiting.front();
        m_waiting.pop_front();
        if (m_own.has(press.time))
            continue;
        press.place =
            m_trail.with([&](const PointerTrail& trail) { return trail.placeAt(press.time); });
        m_output.pressed(press);
    }
}

} // namespace vantro::capture::wayland
