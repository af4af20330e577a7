#include "media/player/PlaybackClock.h"
#include "media/player/SeekQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::media::player {
namespace {

base::HostTime at(double seconds) {
    return base::HostTime(base::HostDuration(std::llround(seconds * 1e9)));
}

struct Correction {
    const char* name;
    double ahead;      ///< of the sound at the beginning, seconds
    double deviceRate; ///< of the sound's device
    double agreesAfter;
};

class PlaybackClockCorrection : public testing::TestWithParam<Correction> {};

TEST_P(PlaybackClockCorrection, ComesToAgreeWithTheSoundWithoutGoingBack) {
    const auto& each = GetParam();
    for (const double rate : {0.5, 1.0, 2.0}) {
        SCOPED_TRACE(rate);
        PlaybackClock clock({1000, 1});
        clock.start(at(0), 100, rate);
        clock.setJump(PlannedJump{{103, 1}, {50, 1}, rate}, at(0));
        bool hasJumped = false;
        double last = 100;
        for (double now = 0; now < 8; now += 0.01) {
            // The sound makes the jump at its own time.
            double heard = 100 + (each.ahead + now * each.deviceRate) * rate;
            heard = heard < 103 ? heard : heard - 53;
            clock.follow({MediaTime::fromSeconds(heard, 90'000), at(now - 0.005)}, at(now));
            if (clock.jumpAt() && *clock.jumpAt() <= at(now)) {
                clock.makeJump();
                hasJumped = true;
                last = 50;
            }
            const double t = clock.secondsAt(at(now));
            ASSERT_GE(t, last - 1e-6) << "back at " << now;
            last = t;
            if (now > each.agreesAfter) {
                const double truth = heard + 0.005 * rate;
                const double distance =
                    std::min(std::abs(t - truth), std::abs(std::abs(t - truth) - 53));
                ASSERT_LT(distance / rate, 0.01) << "at " << now;
            }
        }
        EXPECT_EQ(hasJumped, 8 * rate > 3.2);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PlaybackClockCorrection,
    testing::Values(Correction{"together", 0, 1, 0}, Correction{"slowDevice", 0, 0.995, 0},
                    Correction{"fastDevice", 0, 1.005, 0}, Correction{"soundBehind", -0.1, 1, 2},
                    Correction{"soundAhead", 0.1, 1, 2}, Correction{"soundFarBehind", -1, 1, 4.5},
                    Correction{"soundFarAhead", 1, 1, 0.1}),
    [](const auto& each) { return each.param.name; });

TEST(SeekQueue, GivesUpAStaleSeekButNeverTwiceBeforeAPicture) {
    SeekQueue queue;
    std::vector<std::string> answers;
    const auto add = [&](int second) {
        for (auto& done : queue.add({{second, 1}, {}, [&, second](bool finished) {
                                         answers.push_back(std::to_string(second) +
                                                           (finished ? " shown" : " not"));
                                     }}))
            done(false);
    };
    add(1);
    ASSERT_NE(queue.begin(), nullptr);
    add(2);
    EXPECT_TRUE(queue.givenUp().stop_requested());
    add(3);
    EXPECT_THAT(answers, testing::ElementsAre("1 not", "2 not"));
    EXPECT_EQ(queue.begin(), nullptr) << "the first still runs";
    EXPECT_FALSE(queue.finish(false)) << "told already";
    ASSERT_EQ(queue.begin()->to, (MediaTime{3, 1}));
    add(4);
    EXPECT_FALSE(queue.givenUp().stop_requested()) << "a fast pointer would starve the picture";
    EXPECT_EQ(*queue.target(), (MediaTime{4, 1}));
    queue.finish(true)(true);
    EXPECT_EQ(answers.back(), "3 shown");
    queue.begin();
    add(5);
    EXPECT_TRUE(queue.givenUp().stop_requested());
    queue.finish(false);
    queue.begin();
    add(6);
    EXPECT_FALSE(queue.givenUp().stop_requested());
    EXPECT_EQ(queue.seen().size(), 1U) << "a first picture of it is enough when another waits";
    EXPECT_TRUE(queue.givenUp().stop_requested());
}

} // namespace
} // namespace vantro::media::player
