#include "capture/RecordingTarget.h"
#include "model/VantroError.h"

#include <gmock/gmock.h>

namespace vantro::capture {
namespace {

using testing::ElementsAre;

ShareableWindow window(std::uint32_t id, std::string title, std::string bundleIdentifier) {
    ShareableWindow made;
    made.windowID = id;
    made.title = std::move(title);
    made.bundleIdentifier = std::move(bundleIdentifier);
    made.frame = {5, 5, 321.7, 99};
    made.isOnScreen = true;
    return made;
}

const ShareableContent content{.displays = {{7, "main", {0, 0, 683.5, 384}, 2.0, true},
                                            {9, "side", {1000, -20, 301, 201}, 1.75, false}},
                               .windows = {window(2, "our report", "com.vantro.app"),
                                           window(1, "A Report", "org.example.editor"),
                                           window(3, "", "com.vantro.app")}};

RecordingRequest request(model::CaptureMode mode, std::optional<std::uint32_t> displayID = {},
                         model::Rect area = {}) {
    return {.mode = mode,
            .displayID = displayID,
            .area = area,
            .windowID = {},
            .windowTitle = {},
            .sources = {}};
}

TEST(RecordingTarget, TakesEveryPixelOfADisplayAndRoundsOddSizesDown) {
    const auto main = resolveTarget(request(model::CaptureMode::screen), content);
    EXPECT_EQ(main.display.displayID, 7);
    EXPECT_EQ(main.width, 1366);
    EXPECT_EQ(main.height, 768);
    EXPECT_EQ(main.minimumFrameInterval, base::HostDuration(16'666'666));
    const auto side = resolveTarget(request(model::CaptureMode::screen, 9), content);
    EXPECT_EQ(side.captureRect, content.displays[1].frame);
    EXPECT_EQ(side.width, 300) << "the scale counts in whole numbers";
    EXPECT_EQ(side.height, 200);
    const ShareableContent thirds{
        .displays = {{1, "third", {0, 0, 1000 / 3.0, 700 / 3.0}, 3.0, true}}, .windows = {}};
    const auto third = resolveTarget(request(model::CaptureMode::screen), thirds);
    EXPECT_EQ(third.width, 1000);
    EXPECT_EQ(third.height, 700);
}

TEST(RecordingTarget, ClipsAnAreaToTheDisplaysAndRefusesWhatIsEmptyOrOutside) {
    const auto area = [](model::Rect rect) {
        return resolveTarget(request(model::CaptureMode::area, {}, rect), content);
    };
    // The displays lie within (0, -20) and (1301, 384).
    EXPECT_EQ(area({-50, -50, 100, 100}).captureRect, (model::Rect{0, -20, 50, 70}));
    EXPECT_EQ(area({600, 100, 500, 50}).captureRect, (model::Rect{600, 100, 500, 50}));
    const auto onSide = area({1010, 0, 101.9, 51.2});
    EXPECT_EQ(onSide.display.displayID, 9) << "that it lies on";
    EXPECT_EQ(onSide.width, 100);
    EXPECT_EQ(onSide.height, 50);
    for (const model::Rect& rect : {model::Rect{}, model::Rect{10, 10, 0, 20},
                                    model::Rect{10, 10, -5, 20}, model::Rect{1301, 0, 100, 100},
                                    model::Rect{0, 384, 10, 10}, model::Rect{1000, 0, 1.5, 50}}) {
        EXPECT_THROW(area(rect), model::VantroError) << rect.x << " " << rect.width;
    }
}

TEST(RecordingTarget, LeavesOutOwnWindowsButNotFromAWindowRecording) {
    EXPECT_THAT(resolveTarget(request(model::CaptureMode::screen), content).excludedWindows,
                ElementsAre(2, 3));
    auto named = request(model::CaptureMode::window);
    named.windowTitle = "REPORT";
    const auto target = resolveTarget(named, content);
    EXPECT_EQ(target.windowID, 1U);
    EXPECT_TRUE(target.excludedWindows.empty());
    EXPECT_EQ(target.captureRect, (model::Rect{5, 5, 321.7, 99}));
    EXPECT_EQ(target.width, 642);
    EXPECT_EQ(target.height, 198);
    named.windowID = 2; // one of ours
    EXPECT_THROW(resolveTarget(named, content), model::VantroError);
}

} // namespace
} // namespace vantro::capture
