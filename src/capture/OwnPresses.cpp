#include "capture/OwnPresses.h"

#include <algorithm>

namespace vantro::capture {
namespace {

// Windows are told whole milliseconds, and some only when they get to it. Two presses of a hand are
// further apart.
constexpr base::HostDuration tolerance = std::chrono::milliseconds(30);
constexpr std::size_t mostKept = 64; // far more than come before they are asked for

} // namespace

OwnPresses& OwnPresses::ofThisProgram() {
    static OwnPresses presses;
    return presses;
}

void OwnPresses::note(base::HostTime pressedAt) {
    m_newest.with([=](auto& newest) {
        newest.push_back(pressedAt);
        if (newest.size() > mostKept)
            newest.pop_front();
    });
}

bool OwnPresses::has(base::HostTime pressedAt) const {
    return m_newest.with([=](const auto& newest) {
        return std::ranges::any_of(newest, [=](base::HostTime own) {
            return own - pressedAt <= tolerance && pressedAt - own <= tolerance;
        });
    });
}

} // namespace vantro::capture
