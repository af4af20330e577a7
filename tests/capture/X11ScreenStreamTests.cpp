#include "capture/Colors.h"
#include "capture/SampleCollector.h"
#include "capture/x11/X11CapturePlatform.h"
#include "support/TestWindow.h"

#include <gtest/gtest.h>

namespace vantro {
namespace {

using namespace std::chrono_literals;
using test::hasColor;
using test::SampleCollector;
using test::TestWindow;
using test::XServer;

constexpr std::uint32_t red = 0xd02010;
constexpr std::uint32_t green = 0x20b040;
constexpr std::uint32_t blue = 0x1030e0;
constexpr std::uint32_t black = 0x000000;

/// A running stream of a display's whole main screen, on the server that a test gives.
struct RunningStream {
    explicit RunningStream(const XServer& server, std::optional<Rect> sourceRect = {}) {
        platform = connectX11(server.display()).value();
        const auto display = platform->shareableContent().value().displays.front();
        const Rect shown = sourceRect.value_or(display.frame);
        ContentFilter filter;
        filter.displayID = display.displayID;
        ScreenStreamConfiguration configuration;
        configuration.width = static_cast<int>(shown.width) & ~1;
        configuration.height = static_cast<int>(shown.height) & ~1;
        configuration.sourceRect = sourceRect;
        stream = platform->makeScreenStream(filter, configuration).value();
        stream->startCapture(collector);
    }

    bool awaitColor(int x, int y, std::uint32_t color) {
        return collector.awaitSample(
            [=](const ScreenSample& sample) { return hasColor(*sample.pixels, x, y, color); });
    }

    std::unique_ptr<CapturePlatform> platform;
    SampleCollector collector;
    std::unique_ptr<ScreenStream> stream;
};

/// What a server may lack.
class X11ScreenStreamOn : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(X11ScreenStreamOn, ShowsEachDrawingInItsPlaceAndKeepsTheRest) {
    const XServer server({.missingExtensions = GetParam()});
    TestWindow left(server, {0, 0, 320, 480}, red);
    TestWindow right(server, {320, 0, 320, 480}, green);
    RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(10, 10, red));
    left.fill({100, 201, 3, 3}, blue); // neither on a tile's nor on a chroma sample's edge
    right.fill({0, 470, 320, 10}, blue);
    ASSERT_TRUE(running.awaitColor(600, 475, blue));
    running.stream->stopCapture();
    const auto last = running.collector.samples().back();
    EXPECT_EQ(last.status, FrameStatus::complete);
    EXPECT_EQ(last.pixels->width(), 640);
    EXPECT_EQ(last.pixels->height(), 480);
    EXPECT_TRUE(hasColor(*last.pixels, 100, 202, blue));
    EXPECT_TRUE(hasColor(*last.pixels, 98, 202, red));
    EXPECT_TRUE(hasColor(*last.pixels, 106, 202, red));
    EXPECT_TRUE(hasColor(*last.pixels, 102, 198, red));
    EXPECT_TRUE(hasColor(*last.pixels, 330, 460, green));
    EXPECT_TRUE(hasColor(*last.pixels, 310, 475, red));
}

INSTANTIATE_TEST_SUITE_P(Servers, X11ScreenStreamOn,
                         testing::Values(std::vector<std::string>{},
                                         std::vector<std::string>{"MIT-SHM"},
                                         std::vector<std::string>{"DAMAGE"},
                                         std::vector<std::string>{"XFIXES", "RANDR", "MIT-SHM"}),
                         [](const auto& list) {
                             std::string name = "With";
                             for (const auto& extension : list.param)
                                 name += "out" + extension.substr(0, 3);
                             return name == "With" ? "WithEverything" : name;
                         });

TEST(X11ScreenStream, AStillScreenGivesOneFrame) {
    const XServer server;
    const TestWindow window(server, {0, 0, 640, 480}, red);
    RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(0, 0, red));
    // A second server takes long to start compared with a frame: time for idle frames to show.
    const XServer other;
    running.stream->stopCapture();
    EXPECT_EQ(running.collector.samples().size(), 1);
}

TEST(X11ScreenStream, GivesAtMostSixtyFramesASecondHoweverFastTheScreenChanges) {
    const XServer server;
    TestWindow window(server, {0, 0, 64, 64}, black);
    RunningStream running(server);
    const HostTime end = hostNow() + 1s;
    for (std::uint32_t step = 1; hostNow() < end; ++step)
        window.fill(step * 0x010203 & 0xffffff);
    running.stream->stopCapture();
    const auto samples = running.collector.samples();
    EXPECT_LE(samples.size(), 62);
    EXPECT_GE(samples.size(), 15) << "the machine is slow, but not that slow";
    for (std::size_t index = 1; index < samples.size(); ++index)
        EXPECT_GE(samples[index].presentationTime - samples[index - 1].presentationTime, 12ms);
}

TEST(X11ScreenStream, OffersTheLastPictureAgainUntilItIsTaken) {
    const XServer server;
    TestWindow window(server, {0, 0, 640, 480}, red);
    RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(5, 5, red));
    running.collector.refuseNext(5);
    window.fill(green); // and nothing after it
    ASSERT_TRUE(running.awaitColor(639, 479, green));
    EXPECT_EQ(running.collector.samples().size(), 2);
}

TEST(X11ScreenStream, ShowsOnlyTheAreaAskedFor) {
    const XServer server({.width = 501, .height = 301});
    TestWindow window(server, {0, 0, 501, 301}, red);
    window.fill({301, 100, 100, 51}, green);
    RunningStream running(server, Rect{301, 100, 101, 51});
    ASSERT_TRUE(running.awaitColor(0, 0, green));
    const auto first = running.collector.samples().front().pixels;
    EXPECT_EQ(first->width(), 100);
    EXPECT_EQ(first->height(), 50);
    EXPECT_TRUE(hasColor(*first, 99, 49, green));
    window.fill({0, 0, 200, 301}, blue); // elsewhere
    window.fill({301, 149, 1, 1}, blue); // the area's lower left pixel
    ASSERT_TRUE(running.collector.awaitSample(
        [](const ScreenSample& sample) { return sample.pixels->row(0, 49)[0] < 100; }));
    EXPECT_EQ(running.collector.samples().size(), 2);
}

TEST(X11ScreenStream, TellsWhenTheServerDies) {
    XServer server;
    RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(0, 0, black));
    server.crash();
    EXPECT_EQ(running.collector.awaitError(), "the connection to the display was lost");
    running.stream->stopCapture();
}

TEST(X11ScreenStream, RefusesWhatLiesOutsideOfTheScreen) {
    const XServer server;
    const auto platform = connectX11(server.display()).value();
    ContentFilter filter;
    filter.displayID = platform->shareableContent()->displays.front().displayID;
    ScreenStreamConfiguration configuration;
    configuration.width = 640;
    configuration.height = 482;
    EXPECT_EQ(platform->makeScreenStream(filter, configuration).error(),
              "the area lies outside of the screen");
    filter.displayID += 1;
    EXPECT_EQ(platform->makeScreenStream(filter, configuration).error(), "Display not found");
}

} // namespace
} // namespace vantro
