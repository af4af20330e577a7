#include "capture/LesserServers.h"
#include "capture/RunningStream.h"
#include "support/Program.h"

#include <optional>

namespace vantro::capture {
namespace {

using namespace test::colors;

class X11WindowStreamOn : public testing::TestWithParam<test::MissingExtensions> {};

TEST_P(X11WindowStreamOn, ShowsAWindowThatIsCoveredAndCutOff) {
    const test::XServer server({.missingExtensions = GetParam()});
    test::TestWindow window(server, {500, 300, 301, 251}, red);
    test::TestWindow cover(server, {520, 320, 400, 400}, green);
    test::RunningStream running(server, test::windowRequest(window));
    ASSERT_TRUE(running.awaitColor(100, 100, red));
    window.fill({200, 200, 20, 20}, blue); // beyond the screen's corner, and covered
    ASSERT_TRUE(running.awaitColor(210, 210, blue));
    const auto last = running.collector.samples().back().pixels;
    EXPECT_EQ(last->width(), 300);
    EXPECT_EQ(last->height(), 250);
    EXPECT_TRUE(test::hasColor(*last, 299, 249, red));
    EXPECT_FALSE(running.everHadColor(100, 100, green)) << "what covers it was in the picture";
}

INSTANTIATE_TEST_SUITE_P(Servers, X11WindowStreamOn, test::usualServers(), test::nameOf);

TEST(X11WindowStream, ShowsACoveredWindowWhetherACompositingManagerRunsOrNot) {
    const test::XServer server;
    test::TestWindow window(server, {500, 300, 300, 250}, red);
    const test::TestWindow cover(server, {520, 320, 400, 400}, green);
    std::optional<test::CompositingManager> manager(std::in_place, server, "picom");
    test::RunningStream running(server, test::windowRequest(window));
    ASSERT_TRUE(running.awaitColor(100, 100, red));
    window.fill({200, 200, 20, 20}, blue);
    ASSERT_TRUE(running.awaitColor(210, 210, blue));
    manager.reset();
    window.fill({200, 200, 20, 20}, white);
    ASSERT_TRUE(running.awaitColor(210, 210, white));
    manager.emplace(server, "picom");
    window.place({10, 10, 300, 250});
    window.fill({100, 100, 20, 20}, blue);
    ASSERT_TRUE(running.awaitColor(110, 110, blue));
    EXPECT_FALSE(running.everHadColor(150, 150, green));
}

TEST(X11WindowStream, FollowsAWindowAndFitsItsNewSizes) {
    const test::XServer server;
    test::TestWindow window(server, {10, 10, 200, 100}, red);
    test::RunningStream running(server, test::windowRequest(window));
    ASSERT_TRUE(running.awaitColor(100, 50, red));
    window.place({300, 200, 200, 100});
    window.fill({0, 0, 200, 100}, green);
    ASSERT_TRUE(running.awaitColor(100, 50, green));
    window.place({300, 200, 100, 100}); // shown as the middle 100 × 100 pixels
    window.fill(blue);
    ASSERT_TRUE(running.collector.awaitSample([](const ScreenSample& sample) {
        return test::hasColor(*sample.pixels, 100, 50, blue) &&
               test::hasColor(*sample.pixels, 46, 50, black) &&
               test::hasColor(*sample.pixels, 54, 2, blue) &&
               test::hasColor(*sample.pixels, 154, 50, black);
    }));
    window.place({0, 0, 400, 200}); // at half its size
    window.fill(green);
    window.fill({0, 0, 200, 200}, red);
    ASSERT_TRUE(running.collector.awaitSample([](const ScreenSample& sample) {
        return test::hasColor(*sample.pixels, 96, 50, red) &&
               test::hasColor(*sample.pixels, 104, 50, green);
    }));
    for (const auto& sample : running.collector.samples()) {
        EXPECT_EQ(sample.pixels->width(), 200);
        EXPECT_EQ(sample.pixels->height(), 100);
    }
}

TEST(X11WindowStream, ShowsBlackWhereAWindowIsCutOut) {
    const test::XServer server;
    const test::TestWindow ground(server, {0, 0, 640, 480}, blue);
    test::TestWindow window(server, {10, 10, 200, 100}, red);
    window.shape({{0, 0, 200, 60}});
    test::RunningStream running(server, test::windowRequest(window));
    ASSERT_TRUE(running.awaitColor(100, 50, red));
    window.shape({{50, 0, 100, 100}});
    window.fill(green);
    ASSERT_TRUE(running.awaitColor(100, 90, green));
    ASSERT_TRUE(running.awaitColor(20, 50, black));
    EXPECT_FALSE(running.everHadColor(100, 90, blue));
    EXPECT_FALSE(running.everHadColor(20, 90, blue)) << "what lies beneath was in the picture";
}

TEST(X11WindowStream, KeepsTheLastPictureOfAHiddenWindowAndEndsWithAClosedOne) {
    const test::XServer server;
    test::TestWindow window(server, {10, 10, 200, 100}, red);
    test::RunningStream running(server, test::windowRequest(window));
    ASSERT_TRUE(running.awaitColor(100, 50, red));
    const auto before = running.collector.samples().size();
    window.hide();
    const test::XServer other; // starting it takes a while
    EXPECT_EQ(running.collector.samples().size(), before);
    window.show();
    window.fill(green);
    ASSERT_TRUE(running.awaitColor(100, 50, green));
    window.close();
    EXPECT_EQ(running.collector.awaitError(), "the window was closed");
    EXPECT_TRUE(test::hasColor(*running.collector.samples().back().pixels, 100, 50, green));
}

TEST(X11WindowStream, LeavesOutTheShadowThatAToolkitDraws) {
    const test::XServer server;
    test::TestWindow window(server, {100, 100, 240, 140}, black);
    window.fill({20, 10, 200, 100}, green);
    window.setNumbers("_GTK_FRAME_EXTENTS", {20, 20, 10, 30});
    test::RunningStream running(server, test::windowRequest(window));
    ASSERT_TRUE(running.awaitColor(0, 0, green));
    const auto first = running.collector.samples().front().pixels;
    EXPECT_EQ(first->width(), 200);
    EXPECT_EQ(first->height(), 100);
    EXPECT_TRUE(test::hasColor(*first, 199, 99, green));
    window.fill(red);
    window.setNumbers("_GTK_FRAME_EXTENTS", {0, 0, 0, 0}); // as when it fills the screen
    ASSERT_TRUE(running.awaitLatestColor(100, 0, red)) << "all of it is fitted into the movie";
    ASSERT_TRUE(running.awaitLatestColor(2, 50, black));
}

TEST(X11WindowStream, TellsThatThereIsNoSuchWindowOrNoExtensionForIt) {
    const test::XServer server;
    test::TestWindow window(server, {10, 10, 200, 100}, red);
    const auto target = awaitTarget(*test::connectTo(server), test::windowRequest(window)).value();
    window.close();
    EXPECT_EQ(test::connectTo(server)->makeScreenStream(target).error(), "No window selected");
    const test::XServer plain({.missingExtensions = {"Composite"}});
    EXPECT_EQ(test::connectTo(plain)->makeScreenStream(target).error(),
              "single windows cannot be captured: the display lacks the extension Composite");
}

} // namespace
} // namespace vantro::capture
