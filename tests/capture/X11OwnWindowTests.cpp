// Our own windows stay out of screen and area recordings.
#include "capture/LesserServers.h"
#include "capture/RunningStream.h"
#include "support/TestWindow.h"

#include <gtest/gtest.h>

namespace vantro::capture {
namespace {

using test::RunningStream;
using test::TestWindow;
using test::XServer;
using namespace test::colors;

const test::TestWindow::Names ours{
    .title = {}, .applicationClass = {}, .process = test::ownProcess};

/// What a server may lack.
class OwnWindowsOn : public testing::TestWithParam<test::MissingExtensions> {};

TEST_P(OwnWindowsOn, ShowWhatLiesBeneathThemFromTheFirstFrameOn) {
    const test::XServer server({.missingExtensions = GetParam()});
    test::TestWindow lower(server, {0, 0, 640, 240}, red);
    test::TestWindow upper(server, {100, 100, 200, 200}, green);
    const test::TestWindow own(server, {50, 50, 300, 300}, white, ours);
    test::TestWindow above(server, {60, 60, 20, 20}, blue);
    test::RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(200, 200, green));
    upper.fill({80, 80, 10, 10}, blue);
    lower.fill({300, 70, 10, 10}, green);
    ASSERT_TRUE(running.collector.awaitSample([](const ScreenSample& sample) {
        return test::hasColor(*sample.pixels, 184, 184, blue) &&
               test::hasColor(*sample.pixels, 304, 74, green);
    }));
    above.fill(green);
    ASSERT_TRUE(running.awaitColor(70, 70, green));
    const auto last = running.collector.samples().back().pixels;
    EXPECT_TRUE(test::hasColor(*last, 90, 60, red));
    EXPECT_TRUE(test::hasColor(*last, 60, 300, black)) << "the root's own background";
    for (const auto& [x, y] : {std::pair{54, 54}, {200, 200}, {340, 340}, {320, 70}})
        EXPECT_FALSE(running.everHadColor(x, y, white)) << x << ", " << y;
}

INSTANTIATE_TEST_SUITE_P(Servers, OwnWindowsOn, test::usualServers(), test::nameOf);

TEST(OwnWindows, NeverShowHoweverTheyComeAndMoveAndGo) {
    const test::XServer server;
    test::TestWindow ground(server, {0, 0, 640, 480}, red);
    test::RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(320, 240, red));
    for (int round = 0; round < 5; ++round) {
        test::TestWindow own(server, {100, 100, 200, 200}, white, ours);
        ground.fill({10 + 20 * round, 10, 10, 10}, green);
        ASSERT_TRUE(running.awaitColor(14 + 20 * round, 14, green));
        for (int step = 0; step < 10; ++step)
            own.place({100 + 20 * step, 100 + 10 * step, 200 + step, 200});
        ground.fill({10 + 20 * round, 30, 10, 10}, blue);
        ASSERT_TRUE(running.awaitColor(14 + 20 * round, 34, blue));
    }
    const auto samples = running.collector.samples();
    EXPECT_GE(samples.size(), 11);
    for (const auto& sample : samples)
        for (int y = 100; y < 400; y += 20)
            for (int x = 100; x < 500; x += 20)
                ASSERT_TRUE(test::hasColor(*sample.pixels, x, y, red)) << x << ", " << y;
}

TEST(OwnWindows, NeverShowWhenTheyAndOthersChangeTheirOrderAndShapeFast) {
    const test::XServer server;
    test::TestWindow ground(server, {0, 0, 640, 480}, red);
    test::TestWindow other(server, {150, 150, 200, 200}, green);
    test::TestWindow own(server, {100, 100, 300, 300}, white, ours);
    test::RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(10, 10, red));
    for (int step = 0; step < 40; ++step) {
        own.lower();
        own.shape({{0, 0, 300, 50 + 5 * step}, {100, 0, 20 + 4 * step, 300}});
        own.raise();
        other.shape({{0, 0, 200, 200 - 4 * step}});
        other.place({150 + 2 * step, 150, 200, 200}); // not between two halves of a chroma sample
        other.raise();
        own.raise();
        ground.fill({10, 10, 10, 10}, step % 2 == 0 ? blue : green);
    }
    ground.fill({10, 10, 10, 10}, white);
    ASSERT_TRUE(running.awaitColor(14, 14, white));
    for (const auto& sample : running.collector.samples())
        for (int y = 100; y < 400; y += 20)
            for (int x = 100; x < 420; x += 20)
                ASSERT_TRUE(test::hasColor(*sample.pixels, x, y, red) ||
                            test::hasColor(*sample.pixels, x, y, green))
                    << x << ", " << y;
}

TEST(OwnWindows, FollowTheShapeOfWhatLiesBeneathThem) {
    const test::XServer server;
    const test::TestWindow ground(server, {0, 0, 640, 480}, red);
    test::TestWindow beneath(server, {100, 100, 200, 200}, green);
    const test::TestWindow own(server, {50, 50, 300, 300}, white, ours);
    test::RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(290, 290, green));
    beneath.shape({{0, 0, 100, 200}, {100, 150, 100, 50}}); // a corner is cut out
    ASSERT_TRUE(running.awaitColor(250, 150, red));
    const auto last = running.collector.samples().back().pixels;
    EXPECT_TRUE(test::hasColor(*last, 150, 150, green));
    EXPECT_TRUE(test::hasColor(*last, 250, 270, green));
    EXPECT_FALSE(running.everHadColor(60, 60, white));
}

TEST(OwnWindows, AreThoseOfThisProcessUnlessATestSaysOtherwise) {
    const test::XServer server;
    const test::TestWindow ground(server, {0, 0, 640, 480}, red); // of this process
    auto platform = x11::connectX11(server.display()).value();
    const auto content = platform->shareableContent().value();
    ASSERT_EQ(content.windows.size(), 1);
    EXPECT_EQ(content.windows[0].bundleIdentifier, ownBundleIdentifier);
    test::SampleCollector collector;
    const auto stream = platform->makeScreenStream(resolveTarget({}, content)).value();
    stream->startCapture(collector);
    ASSERT_TRUE(collector.awaitSample([](const ScreenSample&) { return true; }));
    EXPECT_TRUE(test::hasColor(*collector.samples()[0].pixels, 320, 240, black));
}

TEST(OwnWindows, DoNotMakeAScreenThatRestsElsewhereCostFrames) {
    const test::XServer server;
    const test::TestWindow ground(server, {0, 0, 640, 480}, red);
    test::TestWindow own(server, {100, 100, 200, 200}, white, ours);
    test::RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(200, 200, red));
    const auto before = running.collector.samples().size();
    for (int step = 0; step < 50; ++step)
        own.fill(0x010101U * static_cast<std::uint32_t>(step));
    const test::XServer other; // starting it takes a while
    EXPECT_LE(running.collector.samples().size(), before + 1);
}

} // namespace
} // namespace vantro::capture
