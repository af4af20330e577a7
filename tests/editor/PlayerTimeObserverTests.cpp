#include "editor/PlayerTimeObserver.h"
#include "ui/TimeText.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <cmath>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::editor {
namespace {

using media::MediaTime;
using media::player::Observation;
using media::player::PlannedJump;
using model::TimelineSegment;

/// Stands in for a player: its time moves when the test says so, and seeks end when it does.
class ScriptedPlayer : public media::player::PlayerControl {
  public:
    struct Seek {
        double to;
        double tolerance;
        std::function<void(bool)> done;
    };

    double rate() const override { return m_rate; }
    void setRate(double rate) override {
        rates.push_back(rate);
        changeRate(rate);
    }
    MediaTime currentTime() const override { return now; }
    std::optional<MediaTime> duration() const override { return length; }
    void seek(MediaTime to, MediaTime tolerance, std::function<void(bool)> done) override {
        seeks.push_back({to.seconds(), tolerance.seconds(), std::move(done)});
        now = to;
    }
    void planJump(std::optional<PlannedJump> jump) override { plan = jump; }
    Observation observeTime(MediaTime interval, std::function<void(MediaTime)> observer) override {
        EXPECT_EQ(interval, (MediaTime{1, 30}));
        onTime = std::move(observer);
        return Observation([this] { onTime = nullptr; });
    }
    Observation observeRate(std::function<void()> observer) override {
        onRate = std::move(observer);
        return Observation([this] { onRate = nullptr; });
    }
    Observation observeDuration(std::function<void()> observer) override {
        onDuration = std::move(observer);
        return Observation([this] { onDuration = nullptr; });
    }
    Observation observeEnd(std::function<void()> observer) override {
        onEnd = std::move(observer);
        return Observation([this] { onEnd = nullptr; });
    }

    void changeRate(double rate) {
        m_rate = rate;
        if (onRate)
            onRate();
    }
    void tick(double seconds) {
        now = MediaTime::fromSeconds(seconds, 90'000);
        onTime(now);
    }
    /// Ends the last seek.
    void finishSeek(bool finished = true) { seeks.back().done(finished); }
    /// Plays on by a tick's length, over the planned jump, and ticks.
    void playOn() {
        double t = now.seconds() + m_rate / 30;
        if (plan && now < plan->from && t >= plan->from.seconds()) {
            t = plan->to.seconds() + (t - plan->from.seconds()) / m_rate * plan->rate;
            const double rate = plan->rate;
            plan.reset();
            changeRate(rate);
        }
        tick(t);
    }

    MediaTime now;
    std::optional<MediaTime> length;
    std::vector<double> rates;
    std::vector<Seek> seeks;
    std::optional<PlannedJump> plan;
    std::function<void(MediaTime)> onTime;
    std::function<void()> onRate, onDuration, onEnd;

  private:
    double m_rate = 0;
};

TimelineSegment segment(double start, double end, double speed = 1) {
    return {.startFraction = start, .endFraction = end, .speed = speed};
}

/// Ten seconds with a gap from 4 to 6, behind which playing is twice as fast.
const std::vector<TimelineSegment> withGap{segment(0, 0.4), segment(0.6, 1, 2)};

class PlayerTimeObserverTest : public testing::Test {
  protected:
    PlayerTimeObserverTest() { observer.attach(player); }

    void open(double duration, std::vector<TimelineSegment> segments) {
        player->length = MediaTime::fromSeconds(duration);
        player->onDuration();
        observer.setSegments(std::move(segments));
    }
    void playAt(double t, double rate = 1) {
        player->changeRate(rate);
        player->tick(t);
        player->rates.clear();
    }

    std::shared_ptr<ScriptedPlayer> player = std::make_shared<ScriptedPlayer>();
    PlayerTimeObserver observer;
};

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

TEST_F(PlayerTimeObserverTest, TheEndOfTheItemStartsOver) {
    open(10, {});
    player->onEnd();
    EXPECT_DOUBLE_EQ(player->seeks.back().to, 0);
    player->onEnd();
    EXPECT_EQ(player->seeks.size(), 1U) << "one restart at a time";
    player->finishSeek();
    EXPECT_EQ(player->rates, std::vector{1.0});
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

TEST_F(PlayerTimeObserverTest, UntilTheDurationIsKnownNoRuleHoldsAndTrimTimesFollowIt) {
    observer.setSegments(withGap);
    EXPECT_EQ(observer.progress(), 0);
    EXPECT_EQ(observer.trimEndTime(), std::nullopt);
    playAt(5);
    EXPECT_TRUE(player->seeks.empty());
    EXPECT_EQ(observer.duration(), 0);
    player->length = MediaTime{10, 1};
    player->onDuration();
    EXPECT_EQ(observer.duration(), 10);
    EXPECT_EQ(observer.trimStartTime(), 0);
    EXPECT_EQ(observer.trimEndTime(), 10);
    EXPECT_EQ(observer.progress(), 0.5);
    observer.setSegments(std::vector<TimelineSegment>{});
    EXPECT_EQ(observer.trimEndTime(), std::nullopt);
}

TEST_F(PlayerTimeObserverTest, EqualWritesTellNobody) {
    open(10, withGap);
    QSignalSpy times(&observer, &PlayerTimeObserver::currentTimeChanged);
    QSignalSpy progress(&observer, &PlayerTimeObserver::progressChanged);
    QSignalSpy playing(&observer, &PlayerTimeObserver::isPlayingChanged);
    QSignalSpy trims(&observer, &PlayerTimeObserver::trimEndTimeChanged);
    for (int i = 0; i < 3; ++i) {
        player->tick(3);
        player->changeRate(1);
        observer.setSegments(withGap);
    }
    EXPECT_EQ(times.count(), 1);
    EXPECT_EQ(progress.count(), 1);
    EXPECT_EQ(playing.count(), 1);
    EXPECT_EQ(trims.count(), 0);
}

TEST_F(PlayerTimeObserverTest, LabelsCountMinutesBeyondTheHour) {
    open(3661, {});
    EXPECT_EQ(observer.durationLabel(), "61:01");
    for (const auto& [t, label] :
         {std::pair{0.0, "00:00"}, {59.99, "00:59"}, {60.0, "01:00"}, {75.9, "01:15"}}) {
        player->tick(t);
        EXPECT_EQ(observer.currentTimeLabel(), label);
    }
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

TEST_F(PlayerTimeObserverDeathTest, CallbacksOnOtherThreadsAreFatal) {
    EXPECT_DEATH(std::jthread([this] { player->tick(1); }).join(),
                 "Incorrect actor executor assumption; Expected same executor as");
}

TEST_F(PlayerTimeObserverDeathTest, LabelsOfWhatIsNotFiniteAreFatal) {
    EXPECT_DEATH(ui::transportText(std::nan("")), "not finite or too large");
}

} // namespace
} // namespace vantro::editor
