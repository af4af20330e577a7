// How exactly clicks are recorded: presses a user's button (XTEST) at known instants and pixels of
// the display that DISPLAY names, and compares what the cursor tracker makes of them. Beside it the
// instants that the X server itself gives the presses, in whole milliseconds: what a recorder gets
// that takes the events' own times.
// usage: click_bench [CLICKS]

#include "capture/session/CursorTracker.h"
#include "capture/x11/X11CapturePlatform.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <xcb/xcb.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace {

using namespace vantro;

struct Press {
    base::HostTime when;
    model::Point where;
};

struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

const xcb_screen_t& screenOf(const Connection& connection) {
    return *xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data;
}

void selectRawPresses(const Connection& connection) {
    std::free(xcb_input_xi_query_version_reply(
        connection.get(), xcb_input_xi_query_version(connection.get(), 2, 2), nullptr));
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t bits;
    } const mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS};
    xcb_input_xi_select_events(connection.get(), screenOf(connection).root, 1, &mask.head);
    std::free(xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()),
                                        nullptr));
}

void fake(const Connection& connection, std::uint8_t type, std::uint8_t detail,
          model::Point place) {
    xcb_test_fake_input(connection.get(), type, detail, 0, screenOf(connection).root,
                        static_cast<std::int16_t>(place.x), static_cast<std::int16_t>(place.y), 0);
}

Press press(const Connection& connection, int index) {
    const auto& screen = screenOf(connection);
    const model::Point where{.x = static_cast<double>(index * 157 % screen.width_in_pixels),
                             .y = static_cast<double>(index * 101 % screen.height_in_pixels)};
    fake(connection, XCB_MOTION_NOTIFY, 0, where);
    const base::HostTime now = base::hostNow();
    fake(connection, XCB_BUTTON_PRESS, 1, where);
    fake(connection, XCB_BUTTON_RELEASE, 1, where);
    xcb_flush(connection.get());
    return {now, where};
}

/// The server's own time of each press since the last call, in milliseconds.
std::vector<double> serverTimes(const Connection& connection) {
    std::vector<double> times;
    while (xcb_generic_event_t* event = xcb_poll_for_event(connection.get())) {
        times.push_back(reinterpret_cast<xcb_input_raw_button_press_event_t*>(event)->time);
        std::free(event);
    }
    return times;
}

void print(const char* what, std::vector<double> errors) {
    std::ranges::sort(errors);
    std::printf("%-32s median %6.3f ms, worst %6.3f ms\n", what, errors[errors.size() / 2],
                errors.back());
}

} // namespace

int main(int argc, char** argv) {
    const int count = argc > 1 ? std::max(1, std::atoi(argv[1])) : 100;
    const Connection hand(xcb_connect(nullptr, nullptr));
    const Connection listener(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(hand.get()) != 0) {
        std::fprintf(stderr, "click_bench: cannot open the display\n");
        return 1;
    }
    selectRawPresses(listener);
    const auto platform = capture::x11::connectX11().value();
    capture::SharedRecordingClock clock;
    const base::HostTime zero = base::hostNow();
    clock.with([zero](capture::RecordingClock& each) { each.start(zero); });
    const auto pointer =
        platform->makePointerSource(capture::awaitTarget(*platform, {}).value()).value();
    capture::CursorTracker tracker(clock);
    pointer->start(tracker);
    tracker.start();
    std::vector<Press> presses;
    for (int index = 0; index < count; ++index) {
        presses.push_back(press(hand, index));
        std::this_thread::sleep_for(std::chrono::milliseconds(30 + index % 7));
    }
    pointer->stop();
    tracker.stop(base::hostNow());
    const auto clicks = tracker.clicks();
    const auto times = serverTimes(listener);
    if (clicks.size() != presses.size() || times.size() != presses.size()) {
        std::fprintf(stderr, "click_bench: %zu of %zu clicks were recorded\n", clicks.size(),
                     presses.size());
        return 1;
    }
    std::vector<double> errors;
    std::vector<double> serverErrors;
    int misplaced = 0;
    for (std::size_t index = 0; index < presses.size(); ++index) {
        const auto& [when, where] = presses[index];
        errors.push_back(std::abs(clicks[index].timestamp - base::inSeconds(when - zero)) * 1000);
        const double injected = base::inSeconds(when.time_since_epoch()) * 1000;
        serverErrors.push_back(std::abs(std::fmod(times[index] - injected, 4294967296.0)));
        misplaced += clicks[index].x != where.x || clicks[index].y != where.y ? 1 : 0;
    }
    print("time of a click", errors);
    print("the same by the server's times", serverErrors);
    std::printf("%-32s %d of %d\n", "clicks at another pixel", misplaced, count);
    return 0;
}
