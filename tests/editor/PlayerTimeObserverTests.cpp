#include "editor/ObserverFixture.h"

#include <QSignalSpy>

namespace vantro::editor {
namespace {

struct TickCase {
    const char* name;
    std::vector<TimelineSegment> segments;
    double t;
    double rate;
    std::optional<double> seek; ///< where playing jumps to
    std::optional<double> newRate;
    std::optional<PlannedJump> plan;
};

class PlayerTimeObserverTick : public PlayerTimeObserverTest,
                               public testing::WithParamInterface<TickCase> {};

TEST_P(PlayerTimeObserverTick, FollowsTheSegments) {
    const auto& each = GetParam();
    open(10, each.segments);
    player->changeRate(each.rate);
    player->tick(each.t);
    ASSERT_EQ(player->seeks.size(), each.seek ? 1U : 0U);
    if (each.seek) {
        EXPECT_DOUBLE_EQ(player->seeks[0].to, *each.seek);
        EXPECT_EQ(player->seeks[0].tolerance, 0);
        player->tick(each.t); // under way: nothing more
        EXPECT_EQ(player->seeks.size(), 1U);
        player->finishSeek();
    }
    EXPECT_EQ(player->rates, each.newRate ? std::vector{*each.newRate} : std::vector<double>{});
    EXPECT_EQ(player->plan, each.plan);
    EXPECT_DOUBLE_EQ(observer.currentTime(), each.t);
}

PlannedJump jumpOf(double from, double to, double rate) {
    return {MediaTime::fromSeconds(from), MediaTime::fromSeconds(to), rate};
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PlayerTimeObserverTick,
    testing::Values(
        TickCase{"within", withGap, 2, 1, {}, {}, jumpOf(4, 6, 2)},
        TickCase{"withinFaster", withGap, 7, 1, {}, 2, jumpOf(10, 0, 1)},
        TickCase{"nearlyItsRate", withGap, 7, 2.009, {}, {}, jumpOf(10, 0, 1)},
        TickCase{"atTheEnd", withGap, 4, 1, 6, 2, jumpOf(10, 0, 1)},
        TickCase{"inTheGap", withGap, 5, 1, 6, 2, jumpOf(10, 0, 1)},
        TickCase{"atTheLastEnd", withGap, 10, 2, 0, 1, jumpOf(4, 6, 2)},
        TickCase{"paused", withGap, 5, 0, {}, {}, jumpOf(4, 6, 2)},
        TickCase{"touching", {segment(0, 0.5), segment(0.5, 1, 2)}, 5, 1, {}, 2, jumpOf(10, 0, 1)},
        TickCase{
            "beforeTouching", {segment(0, 0.5), segment(0.5, 1, 2)}, 4, 1, {}, {}, jumpOf(5, 5, 2)},
        TickCase{"splitOnly", {segment(0, 0.5), segment(0.5, 0.8)}, 4, 1, {}, {}, jumpOf(8, 0, 1)},
        TickCase{"aboutToBegin",
                 {segment(0, 0.4), segment(0.4004, 1, 2)},
                 4.003,
                 1,
                 {},
                 2,
                 jumpOf(10, 0, 1)},
        TickCase{"behindTheLast", {segment(0.2, 0.5)}, 9, 1, 2, 1, jumpOf(5, 2, 1)},
        TickCase{
            "beyondTheMovie", {segment(0, 0.5), segment(1.2, 1.5)}, 5, 1, 0, 1, jumpOf(5, 0, 1)},
        TickCase{"none", {}, 5, 1, {}, {}, {}}),
    [](const auto& each) { return each.param.name; });

TEST_F(PlayerTimeObserverTest, LoopsOverALongRecordingWithManyCutsAndNeverGoesBack) {
    // A cut of one picture every three seconds of 30 minutes, at ends that no tick meets.
    constexpr double duration = 1800.37;
    std::vector<TimelineSegment> segments;
    for (int i = 0; i < 600; ++i)
        segments.push_back(
            segment(i / 600.0, (i + 1) / 600.0 - 0.02 / duration, i % 3 == 0 ? 2 : 1));
    for (const bool planned : {true, false}) {
        SCOPED_TRACE(planned ? "the player jumps" : "the observer seeks");
        open(duration, segments);
        player->changeRate(1);
        player->tick(0);
        double last = 0;
        int loops = 0;
        for (int ticks = 0; loops == 0; ++ticks) {
            ASSERT_LT(ticks, 60'000);
            if (!planned)
                player->plan.reset();
            const auto seeksBefore = player->seeks.size();
            player->playOn();
            if (player->seeks.size() > seeksBefore) {
                ASSERT_FALSE(planned && ticks > 0);
                player->finishSeek();
                player->tick(player->now.seconds());
            }
            const double t = observer.currentTime();
            loops += t < last && last > duration - 4 ? 1 : 0;
            ASSERT_TRUE(t > last || loops == 1) << "back from " << last << " to " << t;
            last = t;
        }
        EXPECT_EQ(player->seeks.empty(), planned);
        player->seeks.clear();
    }
}

TEST_F(PlayerTimeObserverTest, OfALongGapNoMoreThanAPictureIsForgiven) {
    open(1000, {segment(0, 0.4), segment(0.5, 1)});
    playAt(499.99);
    EXPECT_TRUE(player->seeks.empty());
    player->tick(499.9);
    ASSERT_EQ(player->seeks.size(), 1U);
    EXPECT_DOUBLE_EQ(player->seeks[0].to, 500);
}

TEST_F(PlayerTimeObserverTest, TheEndOfTheItemStartsOver) {
    open(10, {});
    player->onEnd();
    EXPECT_DOUBLE_EQ(player->seeks.back().to, 0);
    player->onEnd();
    EXPECT_EQ(player->seeks.size(), 1U) << "one restart at a time";
    player->finishSeek();
    EXPECT_EQ(player->rates, std::vector{1.0});
}

TEST_F(PlayerTimeObserverTest, WithoutAPlayerNothingHappens) {
    open(10, withGap);
    playAt(2);
    observer.detach();
    EXPECT_FALSE(player->onTime);
    EXPECT_FALSE(player->onEnd);
    observer.togglePlayPause();
    observer.skipForward(5);
    observer.seek(0.5);
    EXPECT_TRUE(player->seeks.empty());
    // A jump's end that comes after another player was attached is not the new one's.
    observer.attach(player);
    playAt(5);
    const auto done = player->seeks.back().done;
    const auto other = std::make_shared<ScriptedPlayer>();
    observer.attach(other);
    done(true);
    EXPECT_TRUE(other->rates.empty());
}

using PlayerTimeObserverDeathTest = PlayerTimeObserverTest;

} // namespace
} // namespace vantro::editor
