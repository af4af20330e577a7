#include "capture/LesserServers.h"
#include "capture/RunningStream.h"

#include <tuple>

namespace vantro::capture {
namespace {

using namespace std::chrono_literals;
using namespace test::colors;

/// What a server may lack.
class X11ScreenStreamOn : public testing::TestWithParam<test::MissingExtensions> {};

TEST_P(X11ScreenStreamOn, ShowsEachDrawingInItsPlaceAndKeepsTheRest) {
    // Its last column and row of tiles are cut off.
    const test::XServer server({.width = 630, .height = 474, .missingExtensions = GetParam()});
    test::TestWindow left(server, {0, 0, 320, 474}, red);
    test::TestWindow right(server, {320, 0, 310, 474}, green);
    test::RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(10, 10, red));
    left.fill({100, 201, 3, 3},
              blue);                    // neither on a tile's nor on a chroma sample's edge
    right.fill({308, 472, 2, 2}, blue); // the last pixels
    ASSERT_TRUE(running.awaitColor(629, 473, blue));
    running.stream->stopCapture();
    const auto last = running.collector.samples().back();
    EXPECT_TRUE(test::hasColor(*last.pixels, 100, 202, blue));
    EXPECT_TRUE(test::hasColor(*last.pixels, 98, 202, red));
    EXPECT_TRUE(test::hasColor(*last.pixels, 106, 202, red));
    EXPECT_TRUE(test::hasColor(*last.pixels, 102, 198, red));
    EXPECT_TRUE(test::hasColor(*last.pixels, 600, 470, green));
}

INSTANTIATE_TEST_SUITE_P(Servers, X11ScreenStreamOn, test::usualServers(), test::nameOf);
INSTANTIATE_TEST_SUITE_P(PoorServers, X11ScreenStreamOn,
                         testing::Values(test::MissingExtensions{"XFIXES", "RANDR", "MIT-SHM"}),
                         test::nameOf);

TEST(X11ScreenStream, GivesAtMostSixtyFramesASecondHoweverFastTheScreenChanges) {
    const test::XServer server;
    test::TestWindow window(server, {0, 0, 64, 64}, black);
    test::RunningStream running(server);
    const base::HostTime end = base::hostNow() + 1s;
    for (std::uint32_t step = 1; base::hostNow() < end; ++step)
        window.fill(step * 0x010203 & 0xffffff);
    running.stream->stopCapture();
    const auto samples = running.collector.samples();
    EXPECT_LE(samples.size(), 62);
    EXPECT_GE(samples.size(), 15) << "the machine is slow, but not that slow";
    for (std::size_t index = 1; index < samples.size(); ++index)
        EXPECT_GE(samples[index].presentationTime - samples[index - 1].presentationTime, 12ms);
}

TEST(X11ScreenStream, OffersTheLastPictureAgainUntilItIsTaken) {
    const test::XServer server;
    test::TestWindow window(server, {0, 0, 640, 480}, red);
    test::RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(5, 5, red));
    running.collector.refuseNext(5);
    window.fill(green); // and nothing after it
    ASSERT_TRUE(running.awaitColor(639, 479, green));
    EXPECT_EQ(running.collector.samples().size(), 2);
}

TEST(X11ScreenStream, ShowsEachOfSeveralMonitorsAndAreasAcrossThem) {
    // Of unequal size, one of them above the main one's top.
    const test::XServer server({.width = 901, .height = 401});
    test::addMonitor(server, "left", {0, 100, 300, 200}, false);
    test::addMonitor(server, "middle", {300, 50, 400, 300}, true);
    test::addMonitor(server, "right", {700, 0, 201, 401}, false);
    const test::TestWindow left(server, {0, 100, 300, 200}, red);
    test::TestWindow middle(server, {300, 50, 400, 300}, green);
    const test::TestWindow right(server, {700, 0, 201, 401}, blue);
    for (const auto& [name, color, width, height] : {std::tuple{"left", red, 300, 200},
                                                     {"middle", green, 400, 300},
                                                     {"right", blue, 200, 400}}) {
        test::RunningStream running(server, test::screenRequest(server, name));
        ASSERT_TRUE(running.awaitColor(0, 0, color)) << name;
        const auto first = running.collector.samples()[0].pixels;
        EXPECT_EQ(first->width(), width);
        EXPECT_EQ(first->height(), height);
        EXPECT_TRUE(test::hasColor(*first, width - 1, height - 1, color));
    }
    // Global points count from the main monitor's corner: this one is on all three.
    test::RunningStream across(server, test::areaRequest({-100, 100, 600, 50}));
    ASSERT_TRUE(across.awaitColor(99, 49, red));
    const auto first = across.collector.samples()[0].pixels;
    EXPECT_TRUE(test::hasColor(*first, 100, 0, green));
    EXPECT_TRUE(test::hasColor(*first, 498, 49, green));
    EXPECT_TRUE(test::hasColor(*first, 500, 0, blue));
    middle.fill({0, 148, 2, 2}, white); // in its last rows
    EXPECT_TRUE(across.awaitColor(100, 49, white));
}

TEST(X11ScreenStream, RefusesWhatLiesOutsideOfTheScreen) {
    const test::XServer server;
    const auto platform = test::connectTo(server);
    auto target = awaitTarget(*platform, {}).value();
    target.height += 2;
    EXPECT_EQ(platform->makeScreenStream(target).error(), "the area lies outside of the screen");
    target.display.displayID += 1;
    EXPECT_EQ(platform->makeScreenStream(target).error(), "Display not found");
}

} // namespace
} // namespace vantro::capture
