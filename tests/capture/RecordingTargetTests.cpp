#include "capture/RecordingTarget.h"
#include "model/VantroError.h"

#include <gmock/gmock.h>

namespace vantro::capture {
namespace {

using testing::ElementsAre;

ShareableWindow window(std::uint32_t id, std::string bundleIdentifier) {
    ShareableWindow made;
    made.windowID = id;
    made.bundleIdentifier = std::move(bundleIdentifier);
    return made;
}

const ShareableContent content{.displays = {{7, "main", {0, 0, 683.5, 384}, 2.0, true},
                                            {9, "side", {1000, -20, 301, 201}, 1.75, false}},
                               .windows = {window(1, "org.example.editor"),
                                           window(2, "com.vantro.app"),
                                           window(3, "com.vantro.app")}};

RecordingChoice choice(model::CaptureMode mode, std::uint32_t displayID,
                       model::Rect captureRect = {}) {
    return {.captureMode = mode,
            .displayID = displayID,
            .captureRect = captureRect,
            .selectedWindow = {}};
}

std::string failure(const RecordingChoice& wrong) {
    try {
        resolveTarget(wrong, content);
    } catch (const model::VantroError& error) {
        EXPECT_EQ(error.kind(), model::VantroError::Kind::captureStartFailed);
        return error.message();
    }
    return {};
}

TEST(RecordingTarget, TakesEveryPixelOfADisplayAndRoundsOddSizesDown) {
    const auto main = resolveTarget(choice(model::CaptureMode::screen, 7), content);
    EXPECT_EQ(main.stream.width, 1366);
    EXPECT_EQ(main.stream.height, 768);
    EXPECT_EQ(main.stream.minimumFrameInterval, base::HostDuration(16'666'666));
    EXPECT_FALSE(main.stream.sourceRect);
    const auto side = resolveTarget(choice(model::CaptureMode::screen, 9), content);
    EXPECT_EQ(side.stream.width, 300) << "the scale counts in whole numbers";
    EXPECT_EQ(side.stream.height, 200);
}

TEST(RecordingTarget, PlacesAnAreaRelativeToItsDisplay) {
    const auto target =
        resolveTarget(choice(model::CaptureMode::area, 9, {1010, 0, 101.9, 51.2}), content);
    EXPECT_EQ(target.stream.sourceRect, (model::Rect{10, 20, 101.9, 51.2}));
    EXPECT_EQ(target.stream.width, 100);
    EXPECT_EQ(target.stream.height, 50);
}

TEST(RecordingTarget, ClipsAnAreaToTheDisplaysAndRefusesWhatIsEmptyOrOutside) {
    // The displays lie within (0, -20) and (1301, 384).
    EXPECT_EQ(clippedArea({-50, -50, 100, 100}, content), (model::Rect{0, -20, 50, 70}));
    EXPECT_EQ(clippedArea({600, 100, 500, 50}, content), (model::Rect{600, 100, 500, 50}));
    const auto isRefused = [](const auto& attempt) {
        try {
            attempt();
        } catch (const model::VantroError& error) {
            return error.kind() == model::VantroError::Kind::invalidSelection &&
                   error.description() == "Invalid screen area selected.";
        }
        return false;
    };
    for (const model::Rect& rect :
         {model::Rect{}, model::Rect{10, 10, 0, 20}, model::Rect{10, 10, -5, 20},
          model::Rect{1301, 0, 100, 100}, model::Rect{0, 384, 10, 10}})
        EXPECT_TRUE(isRefused([&] { clippedArea(rect, content); })) << rect.x << " " << rect.width;
    EXPECT_TRUE(isRefused([] {
        resolveTarget(choice(model::CaptureMode::area, 9, {1000, 0, 1.5, 50}), content);
    })) << "not two pixels wide";
}

TEST(RecordingTarget, LeavesOutOwnWindowsButNotFromAWindowRecording) {
    EXPECT_THAT(
        resolveTarget(choice(model::CaptureMode::screen, 7), content).filter.excludedWindows,
        ElementsAre(2, 3));
    RecordingChoice chosen = choice(model::CaptureMode::window, 7);
    chosen.selectedWindow = window(1, {});
    chosen.selectedWindow->frame = {5, 5, 321.7, 99};
    const auto target = resolveTarget(chosen, content);
    EXPECT_EQ(target.filter.window, 1U);
    EXPECT_TRUE(target.filter.excludedWindows.empty());
    EXPECT_EQ(target.stream.width, 642);
    EXPECT_EQ(target.stream.height, 198);
}

TEST(RecordingTarget, TellsWhatIsMissing) {
    EXPECT_EQ(failure(choice(model::CaptureMode::screen, 8)), "Display not found");
    EXPECT_EQ(failure(choice(model::CaptureMode::window, 7)), "No window selected");
}

TEST(RecordingTarget, AnAreaTooLargeToCountIsFatal) {
    EXPECT_DEATH(resolveTarget(choice(model::CaptureMode::area, 7, {0, 0, 1e300, 10}), content),
                 "too large");
}

} // namespace
} // namespace vantro::capture
