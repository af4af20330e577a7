#include "editor/ObserverFixture.h"

#include <cmath>

namespace vantro::editor {
namespace {

TEST_F(PlayerTimeObserverTest, PlayStartsOverAtTheEndGoesOnBehindAGapAndElsewhereAtTheSpeed) {
    struct Case {
        std::vector<TimelineSegment> segments;
        double t;
        std::optional<double> seek;
        double rate;
    };
    const Case cases[] = {
        {withGap, 9.96, 0, 1}, {{segment(0.1, 0.5, 1.5)}, 4.96, 1, 1.5},
        {{}, 9.96, 0, 1},      {withGap, 9.9, {}, 2},
        {withGap, 5, 6, 2},    {{}, 5, {}, 1},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.t);
        player->seeks.clear();
        player->rates.clear();
        player->changeRate(0);
        open(10, each.segments);
        player->tick(each.t);
        observer.togglePlayPause();
        ASSERT_EQ(player->seeks.size(), each.seek ? 1U : 0U);
        if (each.seek) {
            EXPECT_DOUBLE_EQ(player->seeks[0].to, *each.seek);
            EXPECT_FALSE(observer.isPlaying());
            player->finishSeek();
        }
        EXPECT_EQ(player->rates, std::vector{each.rate});
        EXPECT_TRUE(observer.isPlaying());
        observer.togglePlayPause();
        EXPECT_EQ(player->rate(), 0);
        EXPECT_FALSE(observer.isPlaying());
    }
}

TEST_F(PlayerTimeObserverTest, SkipsLandOnWhatIsKept) {
    struct Case {
        double t, skip, lands;
    };
    const Case cases[] = {{7, -5, 2}, {6.2, -1, 3.99}, {3, 2, 6}, {9, 5, 10},
                          {2, -5, 0}, {1, 1, 2},       {3, 4, 7}, {6.2, -0.2, 6}};
    open(10, withGap);
    for (const auto& each : cases) {
        SCOPED_TRACE(each.t);
        player->tick(each.t);
        if (each.skip < 0)
            observer.skipBackward(-each.skip);
        else
            observer.skipForward(each.skip);
        EXPECT_NEAR(player->seeks.back().to, each.lands, 1.0 / 1200);
        EXPECT_EQ(player->seeks.back().tolerance, 0);
    }
    observer.setSegments(std::vector{segment(0.2, 0.5)});
    player->tick(3);
    observer.skipBackward(5);
    EXPECT_DOUBLE_EQ(player->seeks.back().to, 2) << "not before the trim start";
    observer.skipForward(5);
    EXPECT_DOUBLE_EQ(player->seeks.back().to, 5) << "not behind the trim end";
    observer.goToEnd();
    EXPECT_NEAR(player->seeks.back().to, 5 - 1.0 / 600, 1e-9);
    observer.goToStart();
    EXPECT_DOUBLE_EQ(player->seeks.back().to, 2);
}

TEST_F(PlayerTimeObserverTest, APausedPlayerNeverStartsByItself) {
    open(10, {segment(0.2, 0.5)});
    for (const double t : {1.0, 5.0, 7.0, 10.0})
        player->tick(t);
    EXPECT_TRUE(player->seeks.empty());
    EXPECT_TRUE(player->rates.empty());
    // A pause during a jump holds when the jump ends; Play during it does as well.
    playAt(6);
    observer.togglePlayPause();
    player->finishSeek();
    EXPECT_EQ(player->rate(), 0);
    player->tick(5);
    observer.togglePlayPause();
    observer.togglePlayPause();
    player->finishSeek();
    EXPECT_EQ(player->rate(), 0);
    // So does a seek that takes a restart's place.
    observer.togglePlayPause();
    player->finishSeek(false);
    EXPECT_EQ(player->rate(), 0);
}

TEST_F(PlayerTimeObserverTest, ScrubbingSeeksNearbyAtOnceAndHoldsThePlayhead) {
    open(10, withGap);
    playAt(2);
    EXPECT_TRUE(player->plan);
    observer.setScrubbing(true);
    EXPECT_FALSE(player->plan) << "nothing jumps under the pointer";
    observer.seek(0.5);
    EXPECT_DOUBLE_EQ(observer.currentTime(), 5);
    EXPECT_DOUBLE_EQ(player->seeks.back().to, 5);
    EXPECT_DOUBLE_EQ(player->seeks.back().tolerance, 0.1);
    player->tick(4.93);
    EXPECT_DOUBLE_EQ(observer.currentTime(), 5);
    EXPECT_EQ(player->seeks.size(), 1U);
    observer.setScrubbing(false);
    EXPECT_DOUBLE_EQ(player->seeks.back().to, 5);
    EXPECT_EQ(player->seeks.back().tolerance, 0);
    observer.seek(0.25);
    EXPECT_DOUBLE_EQ(observer.currentTime(), 5) << "follows when it is there";
    player->finishSeek();
    EXPECT_DOUBLE_EQ(observer.currentTime(), 2.5);
    observer.seek(std::nan(""));
    EXPECT_EQ(player->seeks.size(), 3U);
}

} // namespace
} // namespace vantro::editor
