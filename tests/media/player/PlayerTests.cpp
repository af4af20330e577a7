#include "media/player/PlayerFixture.h"

#include <gmock/gmock.h>

namespace vantro::media::player {
namespace {

TEST_F(PlayerTest, PlaysEveryPictureWhenItIsDue) {
    PlayerRig rig(movie());
    EXPECT_EQ(rig.nextPicture(), 0);
    rig.play();
    const auto start = rig.time().now();
    for (int number = 1; number < 60; ++number) {
        ASSERT_EQ(rig.pictureAfter(1), number);
        EXPECT_NEAR(base::inSeconds(rig.lastPicture().due - start), number / 60.0, 0.001);
        EXPECT_EQ(rig.lastPicture().time, timeOf(number));
        EXPECT_EQ(rig.lastPicture().number, static_cast<std::uint64_t>(number) + 1);
    }
    EXPECT_EQ(rig.player().counts().shown, 59U);
    EXPECT_EQ(rig.player().counts().dropped, 0U);
    EXPECT_EQ(rig.player().counts().late, 0U);
}

TEST_F(PlayerTest, SkipsPicturesThatAreLateAndCountsThem) {
    PlayerRig rig(movie());
    rig.nextPicture();
    rig.play();
    ASSERT_EQ(rig.pictureAfter(1.2), 1);
    rig.movePeriods(20);
    int shown = 1;
    int pictures = 1;
    while (shown < 21) {
        shown = rig.nextPicture();
        ASSERT_GT(shown, 0);
        ++pictures;
    }
    EXPECT_EQ(shown, 21);
    // Those that were composed already are shown at once or given up; all are accounted for.
    const auto counts = rig.player().counts();
    EXPECT_GE(counts.dropped, 15U);
    EXPECT_EQ(counts.shown + counts.dropped, 21U);
    EXPECT_EQ(counts.shown, static_cast<std::uint64_t>(pictures));
}

TEST_F(PlayerTest, AtHighRatesOnlyWhatIsShownIsComposed) {
    PlayerRig rig(movie());
    rig.nextPicture();
    rig.play(4);
    for (int number = 4; number < 200; number += 4)
        ASSERT_NEAR(rig.pictureAfter(1), number - 1, 1)
            << "pictures that none refers to are left out";
    EXPECT_LE(rig.compositor().composed, 54);
    EXPECT_EQ(rig.player().counts().dropped, 0U);
}

struct Jump {
    const char* name;
    int start, from, to;
    double rate;
    std::vector<int> shown;
};

class PlayerJump : public PlayerTest, public testing::WithParamInterface<Jump> {};

TEST_P(PlayerJump, ShowsNothingOfWhatLiesBetween) {
    const auto& jump = GetParam();
    PlayerRig rig(movie());
    ASSERT_TRUE(rig.seek(timeOf(jump.start)));
    rig.newestPicture();
    int told = 0;
    const auto rates = rig.player().observeRate([&] { ++told; });
    rig.player().planJump(PlannedJump{timeOf(jump.from), timeOf(jump.to), jump.rate});
    rig.play();
    std::vector<int> shown;
    for (std::size_t i = 0; i < jump.shown.size(); ++i)
        shown.push_back(rig.pictureAfter(1));
    EXPECT_EQ(shown, jump.shown);
    EXPECT_EQ(rig.player().counts().dropped, 0U);
    EXPECT_EQ(rig.player().rate(), jump.rate);
    EXPECT_TRUE(rig.waitUntil([&] { return told == (jump.rate == 1 ? 1 : 2); }));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, PlayerJump,
    testing::Values(Jump{"forward", 50, 54, 200, 1, {51, 52, 53, 200, 201, 202, 203, 204}},
                    Jump{"loop", 236, 240, 3, 1, {237, 238, 239, 3, 4, 5, 6}},
                    Jump{"faster", 50, 53, 100, 2, {51, 52, 100, 102, 104, 106}},
                    Jump{"rateOnly", 50, 53, 53, 2, {51, 52, 53, 54, 56, 58}}),
    [](const auto& each) { return each.param.name; });

TEST_F(PlayerTest, AJumpThatIsTakenBackIsNotMade) {
    PlayerRig rig(movie());
    rig.nextPicture();
    rig.player().planJump(PlannedJump{timeOf(6), timeOf(200), 1});
    rig.play();
    ASSERT_EQ(rig.pictureAfter(1), 1);
    rig.player().planJump({});
    for (int number = 2; number < 20; ++number)
        ASSERT_EQ(rig.pictureAfter(1), number);
}

TEST_F(PlayerTest, TheEndIsToldAfterTheRateAndTicksComeWhilePlaying) {
    PlayerRig rig(movie());
    std::vector<std::string> events;
    std::vector<double> times;
    auto& player = rig.player();
    const auto rate = player.observeRate([&] { events.push_back("rate"); });
    const auto end = player.observeEnd([&] {
        EXPECT_EQ(player.rate(), 0);
        events.push_back("end");
    });
    ASSERT_TRUE(rig.seek(timeOf(count - 12)));
    const auto time =
        player.observeTime({1, 30}, [&](MediaTime t) { times.push_back(t.seconds()); });
    rig.play();
    for (int i = 0; i < 14; ++i) {
        rig.movePeriods(1);
        const auto now = player.currentTime();
        rig.waitUntil([&] { return rig.waitingPictures() > 0 || now >= timeOf(count); });
        rig.newestPicture();
    }
    EXPECT_TRUE(rig.waitUntil([&] { return !events.empty() && events.back() == "end"; }));
    EXPECT_THAT(events, testing::ElementsAre("rate", "rate", "end"));
    EXPECT_EQ(player.currentTime(), timeOf(count));
    EXPECT_EQ(rig.newestPicture(), count - 1);
    EXPECT_NEAR(static_cast<double>(times.size()), 7, 2) << "thirty a second";
    EXPECT_TRUE(std::ranges::is_sorted(times));
    EXPECT_EQ(times.back(), timeOf(count).seconds());
}

TEST_F(PlayerTest, AMovieOfOnePictureIsShownAndEnds) {
    const auto one = *s_folder / "one.mov";
    test::makePlayedMovie(one, 1, 1);
    PlayerRig rig(one);
    EXPECT_EQ(rig.nextPicture(), 0);
    bool ended = false;
    const auto end = rig.player().observeEnd([&] { ended = true; });
    rig.player().setRate(1);
    EXPECT_TRUE(rig.waitUntil([&] {
        rig.movePeriods(0.1);
        return ended;
    }));
    EXPECT_TRUE(rig.seek(timeOf(5)));
}

} // namespace
} // namespace vantro::media::player
