#include "capture/OwnProcess.h"
#include "support/TestWindow.h"

#include <algorithm>

#include <gmock/gmock.h>

namespace vantro::capture {
namespace {

using testing::HasSubstr;

ShareableContent contentOf(const test::XServer& server) {
    return test::connectTo(server)
        ->shareableContent(CapturePlatform::WindowIcons::included)
        .value();
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
    const auto alone = [] { return contentOf(test::XServer()).displays.at(0); };
    EXPECT_EQ(alone().displayID, alone().displayID) << "the same in every run";
    EXPECT_FALSE(alone().name.empty());
}

TEST(X11Content, ListsWindowsFrontToBackAlsoThoseInAFrameWithTheirNames) {
    const test::XServer server;
    const test::TestWindow frame(server, {10, 20, 300, 200}, 0);
    test::TestWindow client(server, {0, 0, 200, 150}, 0, {"A page", "Reader"});
    client.moveInto(frame, 5, 25);
    client.setNumbers("WM_STATE", {1, 0});
    const test::TestWindow front(server, {0, 0, 50, 40}, 0, {"Tools", "org.example.tools"});
    const auto windows = contentOf(server).windows;
    ASSERT_EQ(windows.size(), 2);
    EXPECT_EQ(windows[0].windowID, front.id());
    EXPECT_EQ(windows[0].bundleIdentifier, "org.example.tools");
    EXPECT_EQ(windows[1].windowID, client.id());
    EXPECT_EQ(windows[1].title, "A page");
    EXPECT_EQ(windows[1].applicationName, "Reader");
    EXPECT_EQ(windows[1].frame, (model::Rect{15, 45, 200, 150}));
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
    window.setNumbers("_NET_WM_ICON", property);
    ASSERT_NE(icon(), nullptr);
    EXPECT_EQ(icon()->height, 40);
    addIcon(property, 256, 256, 0xff000256);
    addIcon(property, 64, 64, 0x80ff4001);
    property.back() = 0x00ffffff;
    addIcon(property, 32, 32, 0xff000032);
    window.setNumbers("_NET_WM_ICON", property);
    EXPECT_EQ(icon()->width, 64);
    ASSERT_EQ(icon()->pixels.size(), 64 * 64);
    EXPECT_EQ(icon()->pixels[0], 0x80802001) << "half of each channel, rounded";
    EXPECT_EQ(icon()->pixels.back(), 0) << "what is transparent has no color";
}

TEST(X11Content, StopsAtAnIconThatCannotBe) {
    const test::XServer server;
    test::TestWindow window(server, {0, 0, 200, 200}, 0);
    for (const auto& [width, height] :
         {std::pair{0U, 64U}, {64U, 0U}, {65536U, 65536U}, {0xffffffffU, 1U}, {100U, 100U}}) {
        std::vector<std::uint32_t> property;
        addIcon(property, 16, 16, 0xff000010);
        property.insert(property.end(), {width, height, 1, 2, 3}); // with too few pixels
        window.setNumbers("_NET_WM_ICON", property);
        const auto icon = contentOf(server).windows.at(0).icon;
        ASSERT_NE(icon, nullptr);
        EXPECT_EQ(icon->width, 16);
        window.setNumbers("_NET_WM_ICON", {width, height});
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

TEST(X11Content, LeavesOutOtherWorkspacesAndAShadowNoLargerThanTheWindow) {
    const test::XServer server;
    test::TestWindow window(server, {10, 20, 300, 200}, 0);
    const auto listed = [&] { return contentOf(server).windows.at(0); };
    window.setNumbers("_GTK_FRAME_EXTENTS", {200, 200, 0, 0});
    EXPECT_EQ(listed().frame, (model::Rect{10, 20, 300, 200})) << "more than there is";
    test::setRootNumber(server, "_NET_CURRENT_DESKTOP", 1);
    for (const auto& [workspace, isShown] :
         {std::pair{0U, false}, std::pair{1U, true}, std::pair{0xffffffffU, true}}) {
        window.setNumbers("_NET_WM_DESKTOP", {workspace});
        EXPECT_EQ(listed().isOnScreen, isShown) << workspace;
    }
}

} // namespace
} // namespace vantro::capture
