#include "media/player/PlayerFixture.h"

#include <gmock/gmock.h>

namespace vantro::media::player {
namespace {

using testing::ElementsAre;

TEST_F(PlayerTest, SoundIsTheClockWhereItIsHeard) {
    auto script = std::make_shared<test::ScriptedSound::Script>();
    PlayerRig rig(movie(), script);
    EXPECT_EQ(rig.nextPicture(), 0);
    rig.player().planJump(PlannedJump{timeOf(200), timeOf(100), 1});
    rig.player().setRate(1);
    const auto calls = [&] {
        const std::lock_guard lock(script->mutex);
        return script->calls;
    };
    ASSERT_TRUE(rig.waitUntil([&] { return !calls().empty(); }));
    EXPECT_THAT(calls(), ElementsAre("play 0 at 1 with a jump"));
    rig.movePeriods(6); // the sound is on its way
    EXPECT_EQ(rig.player().currentTime(), MediaTime{}) << "waits for the first sample";
    {
        const std::lock_guard lock(script->mutex);
        script->reading = SoundReading{{}, rig.time().now()};
    }
    EXPECT_EQ(rig.pictureAfter(1), 1);
    for (int number = 2; number < 120; ++number) {
        // The device runs 1 % slow.
        rig.movePeriods(1 / 0.99);
        {
            const std::lock_guard lock(script->mutex);
            script->reading = SoundReading{timeOf(number), rig.time().now()};
        }
        rig.time().wakeUp();
        rig.waitUntil([&] { return rig.waitingPictures() > 0; });
        ASSERT_NEAR(rig.player().currentTime().seconds(), number / 60.0, 0.02);
        rig.newestPicture();
    }
    rig.player().setRate(0);
    EXPECT_TRUE(rig.waitUntil([&] { return calls().back() == "pause"; }));
}

TEST_F(PlayerTest, SoundThatIsNotHeardInTimeBeginsWithThePictures) {
    auto script = std::make_shared<test::ScriptedSound::Script>();
    PlayerRig rig(movie(), script);
    EXPECT_EQ(rig.nextPicture(), 0);
    rig.player().setRate(1);
    const auto plays = [&] {
        const std::lock_guard lock(script->mutex);
        return std::ranges::count(script->calls, "play 0 at 1");
    };
    ASSERT_TRUE(rig.waitUntil([&] { return plays() == 1; }));
    rig.movePeriods(31); // half a second
    EXPECT_TRUE(rig.waitUntil([&] { return plays() == 2; }));
    EXPECT_EQ(rig.pictureAfter(1), 1) << "nothing is skipped";
}

} // namespace
} // namespace vantro::media::player
