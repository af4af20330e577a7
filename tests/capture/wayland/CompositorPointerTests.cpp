// The pointer from the compositor itself, where the portal can only hide it or have it in the
// picture. Portal, PipeWire and protocol are the genuine ones, the compositor is scripted.
#include "capture/session/CursorJournal.h"
#include "capture/wayland/PortalFixture.h"
#include "support/ScriptedCompositor.h"

#include <algorithm>
#include <functional>

namespace vantro::capture::wayland {
namespace {

using namespace test;
using namespace colors;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr std::uint32_t hidden = 1;
constexpr std::uint32_t inPicture = 2;

class CompositorPointer : public PortalFixture {
  protected:
    void start(const CompositorScript& script = {}, PortalScript portal = {}) {
        compositor = std::make_unique<ScriptedCompositor>(script);
        portal.cursorModes = hidden | inPicture;
        offer({.tellsPointer = false}, portal);
    }
    /// In what has been written down so far.
    bool awaitPlace(model::Point wanted) const {
        return eventually([&] {
            return std::ranges::any_of(
                readCursorJournal(movie).cursorPositions,
                [&](const auto& each) { return each.x == wanted.x && each.y == wanted.y; });
        });
    }

    std::unique_ptr<ScriptedCompositor> compositor;
};

TEST_F(CompositorPointer, IsFollowedOnTheScreenThatWasChosenAndNotInThePicture) {
    start({.outputs = {{.width = 800, .height = 600},
                       {.x = 800, .width = 360, .height = 640, .transform = 1}}}, // so upright it
                                                                                  // is 640 × 360
          {.size = {{320, 180}}});
    session = std::make_unique<RecordingSession>(
        RecordingRequest{.mode = model::CaptureMode::area, .area = {10, 20, 200, 100}},
        [this] { return connect(); });
    ASSERT_TRUE(session->choose({}));
    compositor->movePointer(1, 100, 60); // 50, 30 in points
    ASSERT_TRUE(session->start(movie));
    ASSERT_TRUE(awaitPlace({40, 10}));
    compositor->movePointer(0, 300, 200);
    compositor->movePointer(1, 639, 359);
    ASSERT_TRUE(awaitPlace({309.5, 159.5}));
    end();
    for (const auto& each : metadata.cursorPositions)
        EXPECT_TRUE(each.x == 40 || each.x == 309.5) << each.x << " is on the other screen";
    EXPECT_EQ(metadata.cursorPositions.front().timestamp, 0);
    EXPECT_EQ(desk->portal().log().cursorMode, hidden);
    EXPECT_EQ(desk->portal().log().started, 1);
    EXPECT_THAT(session->statistics().notes, Not(Contains(HasSubstr("pointer is"))));
    EXPECT_THAT(session->statistics().lostSources, IsEmpty());
    session.reset();
    EXPECT_EQ(compositor->cursorSessions(), 0);
}

TEST_F(CompositorPointer, StaysInThePictureWhereTheCompositorIsNoHelp) {
    const ScriptedOutput usual;
    const ScriptedOutput second{.x = 640};
    struct Case {
        const char* what;
        CompositorScript script;
        int questions;
        model::CaptureMode mode = model::CaptureMode::screen;
    };
    const Case cases[] = {
        {"either of two screens", {.outputs = {usual, second}}, 1},
        {"a screen of another size", {.outputs = {{.width = 641}}}, 2},
        {"sessions that end at once", {.stopsSessions = true}, 2},
        {"no such protocol", {.hasCursorSessions = false}, 1},
        {"no pointing device", {.hasPointer = false}, 1},
        {"a compositor that hangs", {.isMute = true}, 1},
        {"a window", {}, 1, model::CaptureMode::window},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        start(each.script, {.sourceType = each.mode == model::CaptureMode::window ? 2U : 1U});
        begin({.mode = each.mode, .chooseAgain = true});
        const auto log = desk->portal().log();
        EXPECT_EQ(log.cursorMode, inPicture);
        EXPECT_EQ(log.started, each.questions);
        EXPECT_EQ(log.restored, each.questions - 1) << "nobody is asked twice";
        EXPECT_THAT(session->statistics().notes, Contains(HasSubstr("part of the picture")));
        end();
        EXPECT_TRUE(has(frames().at(0), 300, 200, red));
        session.reset();
        std::filesystem::remove(movie);
        desk->endPortal();
        compositor.reset();
    }
}

TEST_F(CompositorPointer, ThatIsLostIsSaidAndTheFilmStaysWhole) {
    const std::pair<const char*, std::function<void()>> ends[] = {
        {"session", [this] { compositor->stopSessions(); }},
        {"screen", [this] { compositor->unplug(0); }},
        {"compositor", [this] { compositor.reset(); }}};
    for (const auto& [what, strike] : ends) {
        SCOPED_TRACE(what);
        start();
        begin();
        compositor->movePointer(0, 100, 50);
        ASSERT_TRUE(awaitPlace({100, 50}));
        strike();
        EXPECT_TRUE(eventually([&] {
            return std::ranges::any_of(session->statistics().lostSources, [](const auto& lost) {
                return lost == "Pointer: this desktop does not tell any more where it is";
            });
        }));
        ASSERT_TRUE(awaitFrameAfter([&] { screen->show(filled(green)); }));
        end();
        EXPECT_TRUE(has(frames().back(), 300, 200, green));
        EXPECT_EQ(metadata.cursorPositions.back().x, 100);
        session.reset();
        std::filesystem::remove(movie);
        desk->endPortal();
        compositor.reset();
    }
}

TEST_F(CompositorPointer, IsNotMissedWhileThereIsNoneAndFollowedWithTheNextDevice) {
    start();
    begin();
    compositor->plugPointer(false);
    ASSERT_TRUE(eventually([&] { return compositor->cursorSessions() == 0; }));
    // Nothing is known of it for as long as a portal would have to tell.
    screen->animate([](int number) { return filled(number % 2 ? red : blue); });
    ASSERT_TRUE(awaitFrames(70));
    compositor->plugPointer(true);
    ASSERT_TRUE(eventually([&] { return compositor->cursorSessions() == 1; }));
    compositor->movePointer(0, 7, 8);
    EXPECT_TRUE(awaitPlace({7, 8}));
    end();
    EXPECT_THAT(session->statistics().lostSources, IsEmpty());
}

} // namespace
} // namespace vantro::capture::wayland
