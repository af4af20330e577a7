// Displays that are plugged in and out and change their resolution in the middle of a recording, on
// a real Xorg server.
#include "capture/PointerLog.h"
#include "capture/RunningStream.h"
#include "support/Pointer.h"
#include "support/TemporaryFolder.h"
#include "support/XorgDesk.h"

#include <memory>

#include <gtest/gtest.h>

namespace vantro::capture {
namespace {

using namespace test::colors;

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

TEST_F(XorgTest, AStreamOfAnUnpluggedDisplayEnds) {
    plugIn("--right-of");
    const test::TestWindow window(*server, {800, 0, 640, 480}, red);
    test::RunningStream running(*server, test::screenRequest(*server, "DUMMY1"));
    ASSERT_TRUE(running.awaitColor(600, 400, red));
    xrandr({"--output", "DUMMY1", "--off"});
    EXPECT_EQ(running.collector.awaitError(), "the display was disconnected");
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
    EXPECT_TRUE(running.awaitLatestColor(2, 78, green));
    EXPECT_TRUE(running.awaitLatestColor(796, 520, red));
    EXPECT_TRUE(running.awaitLatestColor(400, 70, black));
    EXPECT_TRUE(running.awaitLatestColor(400, 530, black));
    xrandr({"--output", "DUMMY0", "--mode", "640x400"}); // as the middle 800 × 500
    window.fill({0, 0, 1280, 720}, blue);
    EXPECT_TRUE(running.awaitLatestColor(400, 60, blue));
    EXPECT_TRUE(running.awaitLatestColor(2, 540, blue));
    EXPECT_TRUE(running.awaitLatestColor(400, 40, black));
    EXPECT_TRUE(running.awaitLatestColor(400, 560, black));
}

} // namespace
} // namespace vantro::capture
