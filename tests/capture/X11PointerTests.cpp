// Where the pointer is in the picture, and which presses are clicks.
#include "capture/CaptureClock.h"
#include "capture/PointerLog.h"
#include "capture/RunningStream.h"
#include "capture/x11/input/X11Presses.h"
#include "support/Pointer.h"
#include "support/XConnection.h"

#include <cstdlib>

#include <gtest/gtest.h>
#include <xcb/xinput.h>

namespace vantro::capture {
namespace {

using namespace std::chrono_literals;
using namespace test::colors;

TEST(X11Pointer, IsToldInPointsFromThePicturesCorner) {
    test::XServer server({.width = 1000, .height = 600});
    test::addMonitor(server, "main", {200, 100, 800, 400}, true);
    test::addMonitor(server, "side", {0, 150, 200, 300}, false);
    test::setRootProperty(server, "RESOURCE_MANAGER", "Xft.dpi: 192");
    test::PointerLog main(test::connectTo(server));
    test::PointerLog side(test::connectTo(server), test::screenRequest(server, "side"));
    test::PointerLog area(test::connectTo(server), test::areaRequest({10, 20, 300, 100}));
    test::Pointer hand(server);
    hand.moveTo(231, 160);
    EXPECT_TRUE(main.awaitPlace({15.5, 30}));
    EXPECT_TRUE(side.awaitPlace({115.5, 5}));
    EXPECT_TRUE(area.awaitPlace({5.5, 10}));
    server.crash();
    EXPECT_TRUE(test::eventually([&] { return !main.error().empty(); }));
    EXPECT_EQ(main.place(), (model::Point{15.5, 30})) << "the last one known";
}

TEST(X11Pointer, FollowsARecordedWindowThatMovesAndChangesItsSize) {
    const test::XServer server;
    const test::TestWindow frame(server, {100, 50, 220, 140}, red);
    test::TestWindow window(server, {0, 0, 200, 100}, green);
    window.moveInto(frame, 10, 30);
    window.setNumbers("WM_STATE", {1, 0});
    window.setNumbers("_GTK_FRAME_EXTENTS", {20, 0, 10, 0}); // a shadow to the left and above
    test::PointerLog log(test::connectTo(server), test::windowRequest(window));
    test::Pointer hand(server);
    hand.moveTo(150, 100);
    EXPECT_TRUE(log.awaitPlace({20, 10}));
    window.place({0, 0, 200, 100}); // within the frame
    EXPECT_TRUE(log.awaitPlace({30, 40}));
    window.setNumbers("_GTK_FRAME_EXTENTS", {0, 0, 0, 0});
    window.place({0, 0, 220, 140}); // shown within 180 × 90 pixels: 141 × 90 in the middle
    EXPECT_TRUE(test::eventually([&] {
        return std::abs(log.place().x - (19 + 50 * 141.0 / 220)) < 1 &&
               std::abs(log.place().y - 50 * 90.0 / 140) < 1;
    })) << log.place().x
        << ", " << log.place().y;
}

TEST(X11Pointer, TellsPressesOverWindowsOfOthersAsTheUserHasSetTheButtons) {
    const test::XServer server;
    test::TestWindow window(server, {0, 0, 640, 480}, 0);
    window.flashOnClick(0xffffff, 20); // takes the presses for itself
    test::PointerLog log(test::connectTo(server));
    test::Pointer hand(server);
    hand.moveTo(40, 30);
    std::vector<base::HostTime> times;
    for (const int button : {1, 2, 4, 5, 3})
        times.push_back(hand.click(button));
    ASSERT_TRUE(log.awaitPresses(2));
    hand.setButtons({3, 2, 1}); // the left hand
    times.push_back(hand.click(1));
    ASSERT_TRUE(log.awaitPresses(3));
    const auto presses = log.presses();
    const std::pair<MouseButton, std::size_t> expected[]{
        {MouseButton::left, 0}, {MouseButton::right, 4}, {MouseButton::right, 5}};
    for (std::size_t index = 0; index < presses.size(); ++index) {
        const auto& [button, click] = expected[index];
        EXPECT_EQ(presses[index].button, button) << index;
        EXPECT_EQ(presses[index].place, (model::Point{40, 30}));
        EXPECT_LT(std::abs(base::inSeconds(presses[index].time - times[click])), 0.002);
    }
}

/// Takes the pointer for itself until it is destroyed, as a menu does.
struct PointerGrab {
    PointerGrab(const test::XServer& server, xcb_window_t window)
        : connection(test::connectTo(server.display())) {
        std::free(xcb_grab_pointer_reply(connection.get(),
                                         xcb_grab_pointer(connection.get(), 1, window,
                                                          XCB_EVENT_MASK_BUTTON_PRESS,
                                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
                                                          XCB_NONE, XCB_NONE, XCB_CURRENT_TIME),
                                         nullptr));
    }

    test::XConnection connection;
};

TEST(X11Pointer, APressThatClosesOurMenuIsNoClickAndTheMenuNeverShows) {
    const test::XServer server;
    test::TestWindow ground(server, {0, 0, 640, 480}, red);
    test::PointerLog log(test::connectTo(server));
    test::RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(150, 150, red));
    test::Pointer hand(server);
    constexpr std::size_t rounds = 20;
    for (std::size_t round = 0; round < rounds; ++round) {
        test::TestWindow menu(server, {100, 100, 100, 200}, white, test::ours);
        const PointerGrab grab(server, menu.id());
        hand.moveTo(400, 150);
        hand.click(1); // beside it
        ASSERT_TRUE(log.awaitPresses(2 * round + 1));
        hand.moveTo(150, 150);
        hand.click(1);
        menu.close();  // at once, before anybody can have looked what the pointer was over
        hand.click(1); // where the menu was; looked at after the press before
        ASSERT_TRUE(log.awaitPresses(2 * round + 2));
    }
    constexpr std::size_t many = 2000;
    for (std::size_t press = 0; press < many; ++press)
        hand.click(1);
    ASSERT_TRUE(log.awaitPresses(2 * rounds + many));
    EXPECT_EQ(log.presses().size(), 2 * rounds + many);
    ground.fill({10, 10, 10, 10}, blue);
    ASSERT_TRUE(running.awaitColor(14, 14, blue));
    EXPECT_FALSE(running.everHadColor(150, 150, white));
}

TEST(X11Pointer, IsNotAskedForWhileItRestsAndFoundWhereAHandOrAProgramPutsItThen) {
    const test::XServer server;
    test::PointerLog log(test::connectTo(server));
    const auto rests = [&] {
        return test::eventually([&] { return base::hostNow() - log.time() > 300ms; });
    };
    test::Pointer hand(server);
    hand.moveTo(20, 10);
    EXPECT_TRUE(log.awaitPlace({20, 10}) && rests());
    hand.moveTo(30, 10);
    EXPECT_TRUE(log.awaitPlace({30, 10}) && rests());
    const auto connection = test::connectTo(server.display());
    xcb_warp_pointer(connection.get(), XCB_NONE, test::screenOf(connection).root, 0, 0, 0, 0, 50,
                     60);
    test::roundTrip(connection);
    EXPECT_TRUE(log.awaitPlace({50, 60}));
}

TEST(X11Pointer, TellsOfMotionOnlyWhileThatIsWatched) {
    const test::XServer server;
    const auto connection = x11::X11Connection::open(server.display()).value();
    x11::X11Presses presses(connection, [](std::int64_t) { return false; });
    test::Pointer hand(server);
    const auto hasMotion = [&](int x) {
        const auto answered = [&] { // what comes before an answer has come by then
            return connection.await(xcb_get_input_focus_reply,
                                    xcb_get_input_focus(connection.get())) != nullptr;
        };
        EXPECT_TRUE(answered());
        hand.moveTo(x, 10);
        EXPECT_TRUE(answered());
        bool has = false;
        while (const auto event = presses.nextEvent()) {
            has = true;
            EXPECT_FALSE(presses.handle(*event));
        }
        return has;
    };
    EXPECT_FALSE(hasMotion(20));
    presses.watchMotion(true);
    EXPECT_TRUE(hasMotion(30));
    presses.watchMotion(false);
    EXPECT_FALSE(hasMotion(40));
}

TEST(X11Pointer, TakesATouchForALeftClick) {
    const test::XServer server;
    const auto connection = x11::X11Connection::open(server.display()).value();
    x11::X11Presses presses(connection, [](std::int64_t) { return false; });
    xcb_input_raw_touch_begin_event_t touch{};
    touch.response_type = XCB_GE_GENERIC;
    touch.extension = connection.majorOpcode(xcb_input_id);
    touch.event_type = XCB_INPUT_RAW_TOUCH_BEGIN;
    const auto press = presses.handle(reinterpret_cast<const xcb_generic_event_t&>(touch));
    EXPECT_EQ(press.transform([](const auto& each) { return each.button; }), MouseButton::left);
}

TEST(X11Pointer, TakesTheServersTimeWhereItIsThatOfThisMachine) {
    const base::HostTime now(5'000'000'100ms + 300us); // the server's 32 bits have wrapped around
    const auto at = [&](std::int64_t milliseconds) {
        return hostTimeOf(static_cast<std::uint32_t>(5'000'000'100 + milliseconds), now);
    };
    EXPECT_EQ(at(0), now);
    EXPECT_EQ(at(-30), now - 30ms);
    for (const int elsewhere : {5, -2000, 100'000'000})
        EXPECT_EQ(at(elsewhere), now) << elsewhere;
}

} // namespace
} // namespace vantro::capture
