// What comes of asking the genuine portal: the user's answers, choices that hold again, and
// desktops that do not answer.
#include "capture/wayland/PortalFixture.h"

#include <thread>

namespace vantro::capture::wayland {
namespace {

using namespace test;
using model::VantroError;
using ::testing::HasSubstr;

class PortalAnswer : public PortalFixture {
  protected:
    std::optional<RecordingTarget> ask(const RecordingRequest& request = {},
                                       std::stop_token cancelled = {}) {
        const auto platform = connect();
        return awaitTarget(*platform, request, std::move(cancelled));
    }
    std::string failure(const RecordingRequest& request = {}) {
        try {
            ask(request);
        } catch (const VantroError& error) {
            EXPECT_EQ(error.kind(), VantroError::Kind::captureStartFailed);
            return error.message();
        }
        return "none";
    }
};

TEST_F(PortalAnswer, OfTheUserIsATargetNothingOrAFailure) {
    offer();
    EXPECT_EQ(ask().value_or(RecordingTarget()).width, 640);
    EXPECT_TRUE(eventually([&] { return desk->portal().log().closed == 1; }))
        << "nobody records what was granted";
    granted.answer = PortalScript::takesBack;
    desk->portal().setScript(granted);
    EXPECT_FALSE(ask({.chooseAgain = true}));
    granted.answer = PortalScript::fails;
    desk->portal().setScript(granted);
    EXPECT_THAT(failure({.chooseAgain = true}), HasSubstr("cannot share"));
}

TEST_F(PortalAnswer, ThatNeverComesIsGivenUpAndItsDialogWithdrawn) {
    offer({}, {.answer = PortalScript::never});
    std::stop_source cancel;
    std::jthread user([&] {
        eventually([&] { return desk->portal().log().started == 1; });
        cancel.request_stop();
    });
    EXPECT_FALSE(ask({}, cancel.get_token()));
    EXPECT_TRUE(eventually([&] { return desk->portal().log().withdrawn == 1; }));
}

TEST_F(PortalAnswer, WithoutAPictureFailsSoon) {
    offer();
    screen->stayMute();
    EXPECT_EQ(failure(), "The desktop sent no picture");
    EXPECT_TRUE(RestoreTokens(desk->folder() / "tokens.json", "").take(model::CaptureMode::area))
        << "the choice is lost, though the dialog was answered";
    EXPECT_TRUE(eventually([&] { return desk->portal().log().closed == 1; }));
}

TEST_F(PortalAnswer, HasItsPictureThoughTheFirstOneGotLost) {
    offer();
    screen->loseNext();
    EXPECT_TRUE(ask());
}

TEST_F(PortalAnswer, IsMissingWhereThereIsNoPortal) {
    const auto platform = connect();
    EXPECT_THAT(platform->abilities().screens.whyNot, HasSubstr("install xdg-desktop-portal"));
    EXPECT_THAT(failure(), HasSubstr("install xdg-desktop-portal"));
    EXPECT_FALSE(platform->displays());
    offer();
    EXPECT_TRUE(eventually([&] { return platform->abilities().screens.isAvailable(); }));
    desk->endPortal();
    EXPECT_TRUE(eventually([&] { return !platform->abilities().screens.isAvailable(); }));
}

TEST_F(PortalAnswer, EndsWithThePortal) {
    offer({}, {.answer = PortalScript::never});
    std::jthread crash([&] {
        eventually([&] { return desk->portal().log().started == 1; });
        desk->endPortal();
    });
    EXPECT_THAT(failure(), HasSubstr("has ended"));
}

TEST_F(PortalAnswer, HoldsAgainEachTimeForItsKindOfSource) {
    offer();
    for (int restored = 0; restored < 3; ++restored) {
        const auto platform = connect();
        ASSERT_TRUE(awaitTarget(*platform, {}));
        EXPECT_EQ(platform->chosen().value_or(ChosenContent()).isRestored, restored > 0);
        EXPECT_EQ(desk->portal().log().restored, restored);
    }
    granted.sourceType = 2;
    desk->portal().setScript(granted);
    ASSERT_TRUE(ask({.mode = model::CaptureMode::window}));
    EXPECT_EQ(desk->portal().log().restored, 2) << "a screen's choice says nothing of windows";
    ASSERT_TRUE(ask({.chooseAgain = true}));
    EXPECT_EQ(desk->portal().log().restored, 2);
}

TEST_F(PortalAnswer, IsAskedForAnewWhenTheDesktopRestoresAnotherMonitor) {
    offer();
    ASSERT_TRUE(ask());
    granted.id = "screen-2";
    granted.position = {640, 0};
    desk->portal().setScript(granted);
    const auto target = ask().value_or(RecordingTarget());
    EXPECT_EQ(desk->portal().log().restored, 1);
    EXPECT_EQ(desk->portal().log().started, 3) << "the user is asked after all";
    EXPECT_EQ(target.captureRect.x, 640);
}

} // namespace
} // namespace vantro::capture::wayland
