// Recordings through the genuine portal and PipeWire of a scripted compositor, looked at in the
// finished movie. Each compositor behaves as one that there is, or worse.
#include "capture/wayland/PortalFixture.h"

#include <cmath>

namespace vantro::capture::wayland {
namespace {

using namespace test;
using namespace test::colors;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class PortalRecording : public PortalFixture {};

TEST_F(PortalRecording, HoldsEachStateOfAScreenAndItsSizes) {
    offer({.width = 801, .height = 601}, {.position = {{100, 50}}, .size = {{400, 300}}});
    begin();
    ASSERT_TRUE(awaitFrameAfter(
        [&] { screen->show({.patches = {{0, 0, 801, 601, red}, {200, 100, 100, 100, green}}}); }));
    end();
    const auto made = frames();
    ASSERT_GE(made.size(), 2);
    EXPECT_EQ(made[0].pixels->width(), 800);
    EXPECT_EQ(made[0].pixels->height(), 600);
    EXPECT_TRUE(has(made[0], 250, 150, red));
    EXPECT_TRUE(has(made.back(), 250, 150, green));
    EXPECT_TRUE(has(made.back(), 190, 150, red));
    EXPECT_EQ(metadata.displayScaleFactor, 2);
    EXPECT_EQ(metadata.captureRect, (model::Rect{100, 50, 400.5, 300.5}));
    EXPECT_TRUE(eventually([&] { return desk->portal().log().closed == 1; }))
        << "the desktop goes on saying that its screen is shared";
}

TEST_F(PortalRecording, OfAStillScreenIsOnePicture) {
    offer();
    begin();
    const auto started = base::hostNow();
    ASSERT_TRUE(eventually([&] { return base::hostNow() - started > std::chrono::seconds(1); }));
    end();
    EXPECT_EQ(screen->sent(), 1);
    EXPECT_EQ(session->statistics().framesCaptured, 1);
    EXPECT_GT(metadata.endTime, 1);
}

TEST_F(PortalRecording, ReadsEveryLayoutOfPixels) {
    using Format = ScreenProfile::Format;
    for (const auto format : {Format::bgrx, Format::bgra, Format::rgbx, Format::xrgb, Format::xbgr,
                              Format::rgb, Format::bgr}) {
        SCOPED_TRACE(static_cast<int>(format));
        const ScreenProfile profile{.width = 330, .height = 74, .format = format};
        offer(profile);
        screen->show({.patches = {{0, 0, 330, 74, blue}, {100, 20, 40, 30, green}}});
        begin();
        end();
        const auto first = frames().at(0);
        EXPECT_TRUE(has(first, 50, 40, blue));
        EXPECT_TRUE(has(first, 120, 36, green));
        session.reset();
        std::filesystem::remove(movie);
        desk->endPortal();
    }
}

/// A square stands where the pointer is, so that picture and pointer can be told apart in time.
TEST_F(PortalRecording, HasThePointerWithinAFrameOfItsPicture) {
    const ScreenProfile profile{.width = 960, .height = 540};
    offer(profile);
    begin();
    const auto placeAt = [](int number) { return 100 + 10 * (number % 70); };
    screen->animate([&](int number) {
        return ScreenFrame{.patches = {{placeAt(number) - 8, 260, 16, 16, white}},
                           .pointer = {{placeAt(number), 268}}};
    });
    ASSERT_TRUE(awaitFrames(60));
    end();
    int compared = 0;
    for (const auto& frame : frames()) {
        int left = 0;
        while (left < 960 && frame.pixels->row(0, 268)[left] < 128)
            ++left;
        const double time = frame.presentationTime.seconds();
        const auto after = std::ranges::lower_bound(metadata.cursorPositions, time, {},
                                                    &model::CursorPosition::timestamp);
        if (left == 960 || after == metadata.cursorPositions.begin() ||
            after == metadata.cursorPositions.end())
            continue;
        // The square's own place must be among what the path says within a frame of that time.
        const bool isNear = std::ranges::any_of(metadata.cursorPositions, [&](const auto& sample) {
            return std::abs(sample.timestamp - time) <= 1.0 / 60 + 0.002 &&
                   std::abs(sample.x - (left + 8)) <= 10;
        });
        EXPECT_TRUE(isNear) << "at " << time << " s the square stands at " << left + 8;
        ++compared;
    }
    EXPECT_GT(compared, 40);
    EXPECT_EQ(metadata.cursorPositions.back().y, 268);
}

/// KWin: the time of the screen's last change stands on every buffer, and those with news of the
/// pointer have a flag only.
TEST_F(PortalRecording, FollowsThePointerOverAStillScreenWhoseTimesAreStale) {
    offer({.emptyIsCorrupted = true});
    screen->show({.patches = {{0, 0, 640, 360, red}},
                  .pointer = {{10, 10}},
                  .time = ScreenFrame::Time::stale});
    begin();
    for (int i = 1; i <= 30; ++i)
        screen->show({.hasPicture = false,
                      .pointer = {{10 + 10 * i, 20}},
                      .time = ScreenFrame::Time::stale});
    ASSERT_TRUE(eventually([&] { return screen->sent() >= 31; }));
    ASSERT_TRUE(awaitFrameAfter([&] {
        screen->show({.patches = {{0, 0, 640, 360, green}},
                      .pointer = {{310, 20}},
                      .time = ScreenFrame::Time::stale});
    }));
    end();
    EXPECT_EQ(frames().size(), 2);
    EXPECT_TRUE(has(frames().back(), 300, 200, green));
    EXPECT_EQ(metadata.cursorPositions.back().x, 310);
    EXPECT_GT(metadata.cursorPositions.size(), 15) << "moves at one time are one place";
}

/// Mutter: a window's stream is as large as its monitor, and a crop says where the window is.
TEST_F(PortalRecording, OfAWindowIsItsCropAndThePointerCountsFromThere) {
    offer({.width = 800, .height = 600, .emptyIsCorrupted = false},
          {.sourceType = 2, .id = "", .position = {}, .size = {}});
    const Patch window{100, 80, 320, 200, green};
    screen->show(
        {.patches = {{0, 0, 800, 600, red}, window}, .pointer = {{150, 100}}, .crop = window});
    begin({.mode = model::CaptureMode::window});
    ASSERT_TRUE(awaitFrameAfter([&] {
        screen->show({.patches = {{0, 0, 800, 600, red}, window, {100, 80, 16, 16, blue}},
                      .pointer = {{151, 101}},
                      .crop = window});
    }));
    end();
    const auto made = frames();
    EXPECT_EQ(made[0].pixels->width(), 320);
    EXPECT_EQ(made[0].pixels->height(), 200);
    EXPECT_TRUE(has(made[0], 2, 2, green));
    EXPECT_TRUE(has(made[0], 317, 197, green));
    EXPECT_TRUE(has(made.back(), 8, 8, blue));
    EXPECT_EQ(metadata.cursorPositions.back().x, 51);
    EXPECT_EQ(metadata.cursorPositions.back().y, 21);
    EXPECT_EQ(desk->portal().log().types, 2);
}

/// KWin: a window's pictures become larger for a menu that sticks out of it, and nothing says where
/// in them the window is.
TEST_F(PortalRecording, OfAWindowStaysInPlaceWhileItsMenusStickOut) {
    const ScreenProfile profile{.width = 320, .height = 240, .format = ScreenProfile::Format::bgra};
    offer(profile, {.sourceType = 2, .id = "", .position = {}, .size = {}});
    const auto window = [](int x, int y, Patch menu) {
        return ScreenFrame{.patches = {{x, y, 320, 240, red},
                                       {x + 10, y + 10, 300, 20, blue},
                                       {x + 40, y + 60, 100, 150, white},
                                       menu},
                           .pointer = {{x + 60, y + 70}}};
    };
    screen->show(window(0, 0, {}));
    begin({.mode = model::CaptureMode::window});
    const std::pair<std::pair<int, int>, ScreenFrame> shown[] = {
        {{380, 300}, window(60, 60, {0, 0, 120, 130, green})}, // to the left and above
        {{380, 290}, window(0, 0, {250, 200, 130, 90, green})},
        {{320, 240}, window(0, 0, {})},
        {{640, 480}, {.patches = {{0, 0, 640, 480, blue}}}}}; // the window itself
    for (const auto& [size, frame] : shown)
        ASSERT_TRUE(awaitFrameAfter([&] { screen->resize(size.first, size.second, frame); }));
    end();
    const auto made = frames();
    ASSERT_GE(made.size(), 5) << "the last is held until the stop, by one more";
    EXPECT_TRUE(has(made[1], 20, 50, green)) << "the menu";
    EXPECT_TRUE(has(made[1], 130, 200, white)) << "the window";
    EXPECT_TRUE(has(made[2], 300, 230, green));
    EXPECT_TRUE(has(made[2], 50, 70, white));
    EXPECT_TRUE(has(made[3], 300, 230, red));
    EXPECT_TRUE(has(made[4], 300, 230, blue));
    EXPECT_EQ(metadata.cursorPositions.back().x, 60);
}

/// wlroots: no times, a screen on its side, the pointer only as part of the picture.
TEST_F(PortalRecording, OfATurnedScreenWithThePointerInThePictureIsUprightAndSaysSo) {
    offer({.width = 360, .height = 640, .tellsPointer = false}, {.cursorModes = 3});
    // Upright it is 640 × 360 with green at its top left; turned a quarter counterclockwise, that
    // is at the bottom left.
    const ScreenFrame turned{.patches = {{0, 0, 360, 640, red}, {0, 540, 100, 100, green}},
                             .time = ScreenFrame::Time::none,
                             .transform = 1};
    screen->show(turned);
    begin();
    end();
    const auto first = frames().at(0);
    EXPECT_EQ(first.pixels->width(), 640);
    EXPECT_TRUE(has(first, 50, 50, green));
    EXPECT_TRUE(has(first, 600, 300, red));
    EXPECT_THAT(metadata.cursorPositions, IsEmpty());
    EXPECT_EQ(desk->portal().log().cursorMode, 2);
    EXPECT_THAT(session->statistics().notes, Contains(HasSubstr("part of the picture")));
}

TEST_F(PortalRecording, OfAnAreaIsExactlyThatPartOfAnUprightPicture) {
    offer({.width = 360, .height = 640}, {.position = {{1000, 0}}});
    // Upright: white where the area is, the pointer 10 pixels inside of it.
    const auto show = [this](std::uint32_t color) {
        screen->show({.patches = {{0, 0, 360, 640, red}, {57, 640 - 101 - 200, 100, 200, color}},
                      .pointer = {{67, 640 - 1 - 111}},
                      .transform = 1});
    };
    show(white);
    begin({.mode = model::CaptureMode::area, .area = {101, 57, 200, 100}});
    ASSERT_TRUE(awaitFrameAfter([&] { show(green); }));
    end();
    const auto made = frames();
    EXPECT_EQ(made[0].pixels->width(), 200);
    EXPECT_EQ(made[0].pixels->height(), 100);
    for (const auto& [x, y] : {std::pair{0, 0}, {199, 0}, {0, 99}, {199, 99}}) {
        EXPECT_TRUE(has(made[0], x, y, white)) << x << ", " << y;
        EXPECT_TRUE(has(made.back(), x, y, green)) << x << ", " << y;
    }
    EXPECT_EQ(metadata.captureRect, (model::Rect{1101, 57, 200, 100}));
    EXPECT_EQ(metadata.cursorPositions.at(0).x, 10);
    EXPECT_EQ(metadata.cursorPositions.at(0).y, 10);
}

/// They fade.
TEST_F(PortalRecording, BeginsWhenHiddenWindowsAreGone) {
    offer();
    session = std::make_unique<RecordingSession>(RecordingRequest(), [this] { return connect(); });
    ASSERT_TRUE(session->choose({}));
    for (const auto color : {white, blue, green})
        screen->show(filled(color));
    session->awaitHiddenWindows();
    ASSERT_TRUE(session->start(movie));
    ASSERT_TRUE(awaitFrames(1));
    end();
    EXPECT_TRUE(has(frames().at(0), 300, 200, green));
}

TEST_F(PortalRecording, DoesNotBeginWhenTheDesktopHasEndedTheSharing) {
    offer();
    session = std::make_unique<RecordingSession>(RecordingRequest(), [this] { return connect(); });
    ASSERT_TRUE(session->choose({}));
    desk->portal().stopSharing();
    session->awaitHiddenWindows(); // until that is known
    EXPECT_FALSE(session->isShared());
    EXPECT_FALSE(session->start(movie));
    EXPECT_FALSE(std::filesystem::exists(movie));
}

TEST_F(PortalRecording, SaysSoWhenTheDesktopPromisesThePointerAndSendsNone) {
    offer({.tellsPointer = false});
    begin();
    screen->animate([](int number) { return filled(number % 2 ? red : blue); });
    EXPECT_TRUE(eventually([&] {
        return std::ranges::any_of(session->statistics().lostSources, [](const auto& lost) {
            return lost.contains("Pointer: this desktop does not tell where it is");
        });
    }));
    end();
    EXPECT_THAT(metadata.cursorPositions, IsEmpty());
}

TEST_F(PortalRecording, FitsOtherSizesIntoTheMovieWithThePointer) {
    offer();
    begin();
    ASSERT_TRUE(awaitFrameAfter([&] {
        screen->resize(320, 180);
        screen->show(
            {.patches = {{0, 0, 320, 180, red}, {0, 0, 160, 180, green}}, .pointer = {{80, 45}}});
    }));
    end();
    const auto last = frames().back();
    EXPECT_EQ(last.pixels->width(), 640);
    EXPECT_TRUE(has(last, 100, 100, green));
    EXPECT_TRUE(has(last, 500, 100, red));
    EXPECT_EQ(metadata.cursorPositions.back().x, 160);
    EXPECT_EQ(metadata.cursorPositions.back().y, 90);
}

TEST_F(PortalRecording, StaysWholeWhileTheSizeChangesAllTheTime) {
    offer();
    begin();
    for (int i = 0; i < 12; ++i)
        ASSERT_TRUE(awaitFrameAfter([&] {
            screen->resize(640 - 20 * i, 360);
            screen->show(filled(i % 2 ? red : blue));
        }));
    ASSERT_TRUE(awaitFrameAfter([&] {
        screen->animate([](int number) {
            auto frame = filled(green);
            frame.patches.push_back({number % 100, 0, 8, 8, white});
            return frame;
        });
    }));
    ASSERT_TRUE(awaitFrames(session->statistics().framesCaptured + 5));
    end();
    EXPECT_TRUE(has(frames().back(), 320, 180, green));
}

TEST_F(PortalRecording, LeavesOutPicturesThatAreNotWhatTheySay) {
    offer();
    begin();
    ScreenFrame wrong = filled(blue);
    for (const int stride : {-2560, 4, 2000, 1 << 30}) {
        wrong.claimedStride = stride;
        screen->show(wrong);
    }
    wrong = filled(blue);
    wrong.crop = Patch{700, 400, 50, 50, 0}; // beside the picture
    screen->show(wrong);
    ASSERT_TRUE(awaitFrameAfter([&] { screen->show(filled(green)); }));
    end();
    for (const auto& frame : frames())
        EXPECT_FALSE(has(frame, 300, 200, blue));
    EXPECT_TRUE(has(frames().back(), 300, 200, green));
}

TEST_F(PortalRecording, IsKeptWhenTheDesktopStopsIt) {
    offer();
    begin();
    desk->portal().stopSharing();
    screen->vanish();
    ASSERT_TRUE(awaitCondition(RecordingCondition::userStopped));
    end();
    EXPECT_TRUE(has(frames().at(0), 300, 200, red));
}

TEST_F(PortalRecording, IsKeptWhenWhatItShowsGoes) {
    for (const bool isServerGone : {true, false}) {
        SCOPED_TRACE(isServerGone);
        offer();
        begin();
        isServerGone ? desk->crashPipeWire() : screen->vanish();
        ASSERT_TRUE(awaitCondition(RecordingCondition::streamStopped));
        EXPECT_FALSE(session->statistics().streamError.empty());
        end();
        EXPECT_TRUE(has(frames().at(0), 300, 200, red));
        session.reset();
        std::filesystem::remove(movie);
        desk->endPortal();
        if (isServerGone)
            desk->startPipeWire(); // for a recording after that
    }
}

TEST_F(PortalRecording, HoldsTheTimeWhileTheScreenSleptAndGoesOn) {
    offer();
    begin();
    const auto begun = base::hostNow();
    screen->sleep(true);
    ASSERT_TRUE(eventually([&] { return base::hostNow() - begun > std::chrono::seconds(3); }));
    screen->sleep(false);
    const auto woken = base::hostNow();
    ASSERT_TRUE(awaitFrameAfter([&] { screen->show(filled(green)); }));
    const auto shown = base::hostNow();
    end();
    const auto last = frames().back();
    EXPECT_TRUE(has(last, 300, 200, green));
    EXPECT_GE(last.presentationTime.seconds(), base::inSeconds(woken - begun));
    EXPECT_LE(last.presentationTime.seconds(), base::inSeconds(shown - begun) + 1.5);
    EXPECT_EQ(session->statistics().condition, RecordingCondition::recording);
}

} // namespace
} // namespace vantro::capture::wayland
