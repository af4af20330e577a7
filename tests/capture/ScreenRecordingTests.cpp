// Whole recordings of a real X screen, looked at in the finished movie.
#include "capture/Colors.h"
#include "capture/MovieFrames.h"
#include "capture/OwnProcess.h"
#include "capture/session/CursorJournal.h"
#include "capture/session/RecordingSession.h"
#include "support/Eventually.h"
#include "support/Pointer.h"
#include "support/TemporaryFolder.h"
#include "support/TestWindow.h"

#include <iostream>

#include <gtest/gtest.h>

namespace vantro::capture {
namespace {

using namespace std::chrono_literals;
using namespace test::colors;

constexpr double codingTolerance = 8; // of 255 levels: the movie is not lossless
constexpr double frame = 1.0 / 60;

struct Recording {
    explicit Recording(const test::XServer& server, const RecordingRequest& request = {})
        : recorder(std::make_unique<RecordingSession>(
              request, [&server] { return test::connectTo(server); })) {
        recorder->choose({});
        recorder->start(movie);
    }

    /// Waits until one frame more than `before` has been captured.
    bool awaitFrameAfter(std::int64_t before) {
        return test::eventually([&] { return framesCaptured() > before; });
    }
    /// Waits until the newest sample of the pointer's path stands there.
    bool awaitPointerAt(model::Point place) const {
        return test::eventually([&] {
            const auto path = readCursorJournal(movie).cursorPositions;
            return !path.empty() && model::Point{path.back().x, path.back().y} == place;
        });
    }
    std::int64_t framesCaptured() { return recorder->statistics().framesCaptured; }

    test::TemporaryFolder folder;
    std::filesystem::path movie = folder.path() / "recording.mov";
    std::unique_ptr<RecordingSession> recorder;
};

TEST(ScreenRecording, HoldsEachStateOfTheScreenAndThePointersPath) {
    const test::XServer server({.width = 501, .height = 301}); // odd: cut off to even
    test::TestWindow window(server, {0, 0, 501, 301}, red);
    test::Pointer hand(server);
    hand.moveTo(100, 50);
    Recording recording(server);
    ASSERT_TRUE(recording.awaitFrameAfter(0));
    ASSERT_TRUE(recording.awaitPointerAt({100, 50}));
    hand.moveTo(333, 222);
    window.fill({200, 100, 100, 100}, green);
    ASSERT_TRUE(recording.awaitFrameAfter(1));
    ASSERT_TRUE(recording.awaitPointerAt({333, 222}));
    const auto metadata = recording.recorder->stop();

    const auto frames = test::framesOf(recording.movie);
    ASSERT_GE(frames.size(), 2);
    EXPECT_EQ(frames[0].pixels->width(), 500);
    EXPECT_EQ(frames[0].pixels->height(), 300);
    for (const int x : {250, 100, 333}) // the last two: where the pointer stood
        EXPECT_TRUE(
            test::hasColor(*frames[0].pixels, x, x == 333 ? 222 : 50, red, codingTolerance));
    EXPECT_TRUE(test::hasColor(*frames[1].pixels, 250, 150, green, codingTolerance));
    EXPECT_TRUE(test::hasColor(*frames[1].pixels, 190, 150, red, codingTolerance));

    const auto& path = metadata.cursorPositions;
    ASSERT_GE(path.size(), 2);
    EXPECT_EQ((model::Point{path.front().x, path.front().y}), (model::Point{100, 50}));
    EXPECT_EQ((model::Point{path.back().x, path.back().y}), (model::Point{333, 222}));
    EXPECT_LT(path.front().timestamp, 0.1);
}

TEST(ScreenRecording, AStillScreenCostsOneFrameAndLosesNoTime) {
    const test::XServer server;
    Recording recording(server);
    ASSERT_TRUE(recording.awaitFrameAfter(0));
    const test::XServer other; // starting it takes a while
    const auto metadata = recording.recorder->stop();
    EXPECT_EQ(recording.framesCaptured(), 1);
    EXPECT_NEAR(media::Asset::open(recording.movie).duration().seconds(), metadata.endTime,
                frame + 0.005);
}

/// Movie times of the frames in which the square around each click first shows.
double flashTime(const std::vector<media::VideoFrame>& frames, int x, int y) {
    for (const auto& each : frames)
        if (test::hasColor(*each.pixels, x, y, white, codingTolerance))
            return each.presentationTime.seconds();
    return -1;
}

TEST(ScreenRecording, AClickAndTheFlashThatItCausesLieWithinOneFrame) {
    const test::XServer server;
    test::TestWindow window(server, {0, 0, 640, 480}, 0x203040);
    window.flashOnClick(white, 40);
    test::Pointer hand(server);
    Recording recording(server);
    ASSERT_TRUE(recording.awaitFrameAfter(0));
    constexpr int clicks = 10;
    const auto place = [](int index) { return model::Point{40.0 + 55 * index, 60.0 + 37 * index}; };
    for (int index = 0; index < clicks; ++index) {
        const auto before = recording.framesCaptured();
        hand.moveTo(static_cast<int>(place(index).x), static_cast<int>(place(index).y));
        hand.click(index % 2 == 0 ? 1 : 3);
        ASSERT_TRUE(recording.awaitFrameAfter(before));
        // The pointer stays until somebody has looked where it is.
        ASSERT_TRUE(test::eventually(
            [&] { return std::ssize(readCursorJournal(recording.movie).clickEvents) > index; }));
    }
    const auto metadata = recording.recorder->stop();
    const auto frames = test::framesOf(recording.movie);
    ASSERT_EQ(metadata.clickEvents.size(), clicks);
    double worst = 0;
    for (int index = 0; index < clicks; ++index) {
        const auto& click = metadata.clickEvents[static_cast<std::size_t>(index)];
        EXPECT_EQ((model::Point{click.x, click.y}), place(index));
        EXPECT_EQ(click.isRightClick, index % 2 == 1);
        const double flash =
            flashTime(frames, static_cast<int>(click.x), static_cast<int>(click.y));
        ASSERT_GE(flash, 0) << "no flash at click " << index;
        EXPECT_LE(std::abs(flash - click.timestamp), 0.017 + frame);
        worst = std::max(worst, std::abs(flash - click.timestamp));
    }
    std::cout << "flash and click: at most " << worst * 1000 << " ms apart\n";
}

TEST(ScreenRecording, KeepsWhatItHasWhenTheServerDies) {
    test::XServer server;
    test::TestWindow window(server, {0, 0, 640, 480}, green);
    Recording recording(server);
    ASSERT_TRUE(recording.awaitFrameAfter(0));
    server.crash();
    ASSERT_TRUE(test::eventually([&] {
        return recording.recorder->statistics().condition == RecordingCondition::streamStopped;
    }));
    recording.recorder->stop();
    const auto frames = test::framesOf(recording.movie);
    ASSERT_GE(frames.size(), 1);
    EXPECT_TRUE(test::hasColor(*frames[0].pixels, 320, 240, green, codingTolerance));
}

} // namespace
} // namespace vantro::capture
