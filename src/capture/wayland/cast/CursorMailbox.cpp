#include "capture/wayland/cast/CursorMailbox.h"

#include <utility>

namespace vantro::capture::wayland {
namespace {

// A second of the fastest mouse, far beyond what a frame takes.
constexpr std::size_t mostWaiting = 1024;

} // namespace

void CursorMailbox::note(const News& news) {
    m_waiting.with([&](auto& waiting) {
        if (waiting.size() == mostWaiting)
            waiting.pop_front();
        waiting.push_back(news);
    });
    m_wakeUp();
}

void CursorMailbox::deliver(CastReceiver& receiver) {
    const auto waiting = m_waiting.with([](auto& each) { return std::exchange(each, {}); });
    for (const News& news : waiting)
        news.place ? receiver.pointerAt(*news.place, news.arrival) : receiver.pointerLost();
}

} // namespace vantro::capture::wayland
