// Displays that are plugged in and out and change their resolution in the middle of a recording,
// and presses by touch and pen, on a real Xorg server.
#include "capture/MovieFrames.h"
#include "capture/PointerLog.h"
#include "capture/RecordingSession.h"
#include "capture/RunningStream.h"
#include "support/Pointer.h"
#include "support/TemporaryFolder.h"
#include "support/TestWindow.h"
#include "support/XConnection.h"
#include "support/XorgDesk.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <memory>

#include <gtest/gtest.h>
#include <xcb/xinput.h>

namespace vantro::capture {
namespace {

using test::hasColor;
using test::InputDevice;
using test::RunningStream;
using test::TestWindow;
using test::XServer;
using namespace test::colors;

constexpr double codingTolerance = 8; // of 255 levels: the movie is not lossless

class XorgTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!test::canRunXorg())
            GTEST_SKIP() << "Xorg is not installed or needs root: outputs cannot be switched";
        server =
            std::make_unique<test::XServer>(test::XServer::Options{.xorgFolder = folder.path()});
    }

    void xrandr(const std::vector<std::string>& arguments) {
        test::runXrandr(server->display(), arguments);
    }
    /// A second monitor of 640 × 480 pixels.
    void plugIn(const std::string& side) {
        xrandr({"--newmode", "small", "25.18", "640", "656", "752", "800", "480", "490", "492",
                "525"});
        xrandr({"--addmode", "DUMMY1", "small"});
        xrandr({"--output", "DUMMY1", "--mode", "small", side, "DUMMY0"});
    }
    test::TemporaryFolder folder;
    std::unique_ptr<test::XServer> server;
};

TEST_F(XorgTest, ARecordingOfAnUnpluggedDisplayEndsAndKeepsWhatItHas) {
    plugIn("--right-of");
    const test::TestWindow window(*server, {800, 0, 640, 480}, red);
    const auto movie = folder.path() / "recording.mov";
    RecordingSession recorder(test::screenRequest(*server, "DUMMY1"),
                              [this] { return test::connectTo(*server); });
    ASSERT_TRUE(recorder.choose({}));
    recorder.start(movie);
    ASSERT_TRUE(test::eventually([&] { return recorder.statistics().framesCaptured > 0; }));
    xrandr({"--output", "DUMMY1", "--off"});
    ASSERT_TRUE(test::eventually(
        [&] { return recorder.statistics().condition == RecordingCondition::streamStopped; }));
    EXPECT_EQ(recorder.statistics().streamError, "the display was disconnected");
    recorder.stop();
    const auto first = test::framesOf(movie).at(0).pixels;
    EXPECT_EQ(first->width(), 640);
    EXPECT_EQ(first->height(), 480);
    EXPECT_TRUE(test::hasColor(*first, 600, 400, red, codingTolerance));
}

TEST_F(XorgTest, ARecordingGoesOnWhileOtherDisplaysComeAndGo) {
    test::TestWindow window(*server, {0, 0, 800, 600}, red);
    test::RunningStream running(*server, test::screenRequest(*server, "DUMMY0"));
    test::PointerLog log(test::connectTo(*server), test::screenRequest(*server, "DUMMY0"));
    test::Pointer hand(*server);
    hand.moveTo(700, 100);
    ASSERT_TRUE(log.awaitPlace({700, 100}));
    ASSERT_TRUE(running.awaitColor(400, 300, red));
    plugIn("--left-of"); // which moves the one that is recorded
    hand.moveTo(700, 100);
    EXPECT_TRUE(log.awaitPlace({60, 100}));
    window.place({640, 0, 800, 600});
    window.fill(green);
    ASSERT_TRUE(running.awaitLatestColor(10, 300, green));
    ASSERT_TRUE(running.awaitLatestColor(790, 590, green));
    xrandr({"--output", "DUMMY1", "--off", "--output", "DUMMY0", "--pos", "0x0"});
    window.place({0, 0, 800, 600});
    window.fill(blue);
    ASSERT_TRUE(running.awaitLatestColor(10, 300, blue));
    ASSERT_TRUE(running.awaitLatestColor(790, 590, blue));
}

TEST_F(XorgTest, AnotherResolutionIsFittedIntoTheMovie) {
    test::TestWindow window(*server, {0, 0, 1280, 720}, red);
    test::RunningStream running(*server, test::screenRequest(*server, "DUMMY0"));
    ASSERT_TRUE(running.awaitColor(790, 590, red));
    xrandr({"--output", "DUMMY0", "--mode", "1280x720"}); // shown as the middle 800 × 450 pixels
    window.fill({0, 0, 640, 720}, green);
    ASSERT_TRUE(running.awaitLatestColor(390, 520, green));
    auto latest = running.collector.latest();
    EXPECT_TRUE(test::hasColor(*latest, 2, 78, green));
    EXPECT_TRUE(test::hasColor(*latest, 796, 520, red));
    EXPECT_TRUE(test::hasColor(*latest, 400, 70, black));
    EXPECT_TRUE(test::hasColor(*latest, 400, 530, black));
    xrandr({"--output", "DUMMY0", "--mode", "640x400"}); // as the middle 800 × 500
    window.fill({0, 0, 1280, 720}, blue);
    ASSERT_TRUE(running.awaitLatestColor(400, 60, blue));
    latest = running.collector.latest();
    EXPECT_EQ(latest->width(), 800);
    EXPECT_EQ(latest->height(), 600);
    EXPECT_TRUE(test::hasColor(*latest, 2, 540, blue));
    EXPECT_TRUE(test::hasColor(*latest, 400, 40, black));
    EXPECT_TRUE(test::hasColor(*latest, 400, 560, black));
}

/// Takes the touches of a window as they are, as toolkits do, so that the server makes no presses
/// of them.
test::XConnection takeTouches(const test::XServer& server, const test::TestWindow& window) {
    auto connection = test::connectTo(server.display());
    std::free(xcb_input_xi_query_version_reply(
        connection.get(), xcb_input_xi_query_version(connection.get(), 2, 2), nullptr));
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t bits;
    } const mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                 XCB_INPUT_XI_EVENT_MASK_TOUCH_BEGIN | XCB_INPUT_XI_EVENT_MASK_TOUCH_UPDATE |
                     XCB_INPUT_XI_EVENT_MASK_TOUCH_END};
    xcb_input_xi_select_events(connection.get(), window.id(), 1, &mask.head);
    test::roundTrip(connection);
    return connection;
}

TEST_F(XorgTest, TouchesAndThePensTipAreLeftClicksWhereTheyHit) {
    const test::TestWindow ground(*server, {0, 0, 800, 600}, red);
    const test::TestWindow touched(*server, {0, 300, 400, 300}, blue);
    const auto toolkit = takeTouches(*server, touched);
    const test::TestWindow own(*server, {400, 0, 400, 600}, green, {.process = test::ownProcess});
    std::atomic<int> questions = 0;
    test::PointerLog log(x11::connectX11(server->display(), [&](std::int64_t process) {
                             ++questions;
                             return process == test::ownProcess;
                         }).value());
    std::vector<model::Point> expected;
    const auto isTold = [&](model::Point place) {
        expected.push_back(place);
        return log.awaitPresses(expected.size()) && log.presses().back().place == place &&
               log.presses().back().button == MouseButton::left;
    };
    for (const auto kind : {test::InputDevice::Kind::touchScreen, test::InputDevice::Kind::pen}) {
        const test::InputDevice device(folder.path(), kind);
        device.tap(120, 80);
        EXPECT_TRUE(isTold({120, 80}));
        const int before = questions;
        device.tap(700, 500); // in our own window; it stays until that has been looked at
        ASSERT_TRUE(test::eventually([&] { return questions > before; }));
        device.tap(300, 590);
        EXPECT_TRUE(isTold({300, 590}));
    }
    EXPECT_EQ(log.presses().size(), expected.size());
}

} // namespace
} // namespace vantro::capture
