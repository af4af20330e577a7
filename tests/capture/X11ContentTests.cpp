#include "capture/OwnProcess.h"
#include "support/Eventually.h"
#include "support/Pointer.h"
#include "support/TestWindow.h"

#include <algorithm>
#include <atomic>
#include <latch>

#include <gmock/gmock.h>

namespace vantro::capture {
namespace {

using test::addMonitor;
using test::TestWindow;
using test::XServer;
using testing::HasSubstr;

ShareableContent contentOf(const test::XServer& server) {
    return test::connectTo(server)
        ->shareableContent(CapturePlatform::WindowIcons::included)
        .value();
}

TEST(X11Content, NamesMonitorsTheSameInEveryRun) {
    const test::XServer first({.width = 1000, .height = 600});
    const test::XServer second({.width = 1000, .height = 600});
    const auto display = contentOf(first).displays.at(0);
    EXPECT_EQ(display.displayID, contentOf(second).displays.at(0).displayID);
    EXPECT_NE(display.displayID, 0);
    EXPECT_FALSE(display.name.empty());
    EXPECT_EQ(display.frame, (model::Rect{0, 0, 1000, 600}));
    EXPECT_EQ(display.backingScaleFactor, 1.0);
    EXPECT_TRUE(display.isMain);
}

TEST(X11Content, PutsThePrimaryMonitorFirstAndItsCornerAtTheOrigin) {
    const test::XServer server({.width = 1000, .height = 600});
    test::addMonitor(server, "left", {0, 0, 400, 500}, false);
    test::addMonitor(server, "right", {400, 100, 600, 500}, true);
    test::setRootProperty(server, "RESOURCE_MANAGER", "Xcursor.size:\t48\nXft.dpi:\t200\n");
    const auto displays = contentOf(server).displays;
    const auto left = std::ranges::find(displays, "left", &ShareableDisplay::name);
    ASSERT_NE(left, displays.end());
    EXPECT_EQ(displays.front().name, "right");
    EXPECT_TRUE(displays.front().isMain);
    EXPECT_EQ(displays.front().backingScaleFactor, 2.0) << "200 / 96, in whole numbers";
    EXPECT_EQ(displays.front().frame, (model::Rect{0, 0, 300, 250}));
    EXPECT_EQ(left->frame, (model::Rect{-200, -50, 200, 250}));
    EXPECT_FALSE(left->isMain);
    EXPECT_NE(left->displayID, displays.front().displayID);
}

TEST(X11Content, TakesTheWholeScreenWhereRandrIsMissing) {
    const test::XServer server({.width = 300, .height = 200, .missingExtensions = {"RANDR"}});
    const auto displays = contentOf(server).displays;
    ASSERT_EQ(displays.size(), 1);
    EXPECT_EQ(displays[0].frame, (model::Rect{0, 0, 300, 200}));
    EXPECT_TRUE(displays[0].isMain);
}

TEST(X11Content, ListsWindowsFrontToBackWithTheirNames) {
    const test::XServer server;
    const test::TestWindow back(server, {10, 20, 300, 200}, 0, {"A page", "Reader"});
    const test::TestWindow front(server, {0, 0, 50, 40}, 0, {"Tools", "org.example.tools"});
    const auto windows = contentOf(server).windows;
    ASSERT_EQ(windows.size(), 2);
    EXPECT_EQ(windows[0].windowID, front.id());
    EXPECT_EQ(windows[0].bundleIdentifier, "org.example.tools");
    EXPECT_EQ(windows[1].windowID, back.id());
    EXPECT_EQ(windows[1].title, "A page");
    EXPECT_EQ(windows[1].applicationName, "Reader");
    EXPECT_EQ(windows[1].frame, (model::Rect{10, 20, 300, 200}));
    EXPECT_TRUE(windows[1].isOnScreen);
}

void addIcon(std::vector<std::uint32_t>& property, std::uint32_t width, std::uint32_t height,
             std::uint32_t color) {
    property.insert(property.end(), {width, height});
    property.insert(property.end(), std::size_t{width} * height, color);
}

TEST(X11Content, GivesTheIconThatIsLargeEnoughForAListAndNoLarger) {
    const test::XServer server;
    test::TestWindow window(server, {0, 0, 200, 200}, 0);
    const auto icon = [&] { return contentOf(server).windows.at(0).icon; };
    EXPECT_EQ(icon(), nullptr);
    std::vector<std::uint32_t> property;
    addIcon(property, 16, 16, 0xff000010);
    addIcon(property, 48, 40, 0xff000048);
    window.setIcons(property);
    ASSERT_NE(icon(), nullptr);
    EXPECT_EQ(icon()->width, 48);
    EXPECT_EQ(icon()->height, 40);
    addIcon(property, 256, 256, 0xff000256);
    addIcon(property, 64, 64, 0x80ff4001);
    property.back() = 0x00ffffff;
    addIcon(property, 32, 32, 0xff000032);
    window.setIcons(property);
    EXPECT_EQ(icon()->width, 64);
    ASSERT_EQ(icon()->pixels.size(), 64 * 64);
    EXPECT_EQ(icon()->pixels[0], 0x80802001) << "half of each channel, rounded";
    EXPECT_EQ(icon()->pixels.back(), 0) << "what is transparent has no colour";
}

TEST(X11Content, StopsAtAnIconThatCannotBe) {
    const test::XServer server;
    test::TestWindow window(server, {0, 0, 200, 200}, 0);
    for (const auto& [width, height] :
         {std::pair{0U, 64U}, {64U, 0U}, {65536U, 65536U}, {0xffffffffU, 1U}, {100U, 100U}}) {
        std::vector<std::uint32_t> property;
        addIcon(property, 16, 16, 0xff000010);
        property.insert(property.end(), {width, height, 1, 2, 3}); // with too few pixels
        window.setIcons(property);
        const auto icon = contentOf(server).windows.at(0).icon;
        ASSERT_NE(icon, nullptr);
        EXPECT_EQ(icon->width, 16);
        window.setIcons({width, height});
        EXPECT_EQ(contentOf(server).windows.at(0).icon, nullptr);
    }
}

TEST(X11Content, TellsWhyADisplayCannotBeRecorded) {
    EXPECT_EQ(x11::connectX11(":4711").error(), "cannot open display :4711");
    EXPECT_EQ(x11::connectX11("nonsense").error(), "cannot open display nonsense");
    const test::XServer shallow({.depth = 16});
    EXPECT_THAT(x11::connectX11(shallow.display()).error(), HasSubstr("depth 16"));
    test::XServer dying;
    const auto platform = test::connectTo(dying);
    dying.crash();
    EXPECT_EQ(platform->shareableContent().error(), "the connection to the display was lost");
}

TEST(X11PointerSource, CountsPointsFromTheMainScreensBottomLeftCorner) {
    test::XServer server({.width = 1000, .height = 600});
    test::addMonitor(server, "main", {200, 100, 800, 400}, true);
    test::setRootProperty(server, "RESOURCE_MANAGER", "Xft.dpi: 192");
    const auto pointer = test::connectTo(server)->makePointerSource().value();
    test::Pointer hand(server);
    hand.moveTo(201, 100);
    EXPECT_EQ(pointer->location(), (model::Point{0.5, 200}));
    hand.moveTo(100, 599);
    EXPECT_EQ(pointer->location(), (model::Point{-50, -49.5}));
    server.crash();
    EXPECT_EQ(pointer->location(), (model::Point{-50, -49.5})) << "the last one known";
}

TEST(X11PointerSource, ReportsPressesOfTheWatchedButtonEvenOverWindowsOfOthers) {
    const test::XServer server;
    test::TestWindow window(server, {0, 0, 640, 480}, 0);
    window.flashOnClick(0xffffff, 20); // takes the presses for itself
    const auto pointer = test::connectTo(server)->makePointerSource().value();
    std::latch rightPresses(3);
    std::atomic<int> leftPresses = 0;
    auto left = pointer->monitorPresses(MouseButton::left, [&] { ++leftPresses; });
    const auto right =
        pointer->monitorPresses(MouseButton::right, [&] { rightPresses.count_down(); });
    test::Pointer hand(server);
    for (const int button : {1, 3, 2, 4, 5, 1, 3})
        hand.click(button);
    ASSERT_TRUE(test::eventually([&] { return leftPresses == 2; }));
    left.reset();
    hand.click(1); // nobody watches any more
    hand.click(3);
    rightPresses.wait();
    EXPECT_EQ(leftPresses, 2);
}

} // namespace
} // namespace vantro::capture
