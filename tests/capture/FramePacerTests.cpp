#include "capture/FramePacer.h"

#include <gtest/gtest.h>

namespace vantro {
namespace {

using namespace std::chrono_literals;

constexpr HostDuration interval{1'000'000'000 / 60};
constexpr HostTime start{100s};

TEST(FramePacer, TakesTheFirstFrameAtOnceAndTheNextAnIntervalLater) {
    FramePacer pacer(interval);
    EXPECT_LE(pacer.nextDeadline(), start);
    pacer.frameTaken(start);
    EXPECT_EQ(pacer.nextDeadline(), start + interval);
}

TEST(FramePacer, KeepsItsGridWhenAThreadWakesALittleLate) {
    FramePacer pacer(interval);
    pacer.frameTaken(start);
    for (int frame = 1; frame <= 600; ++frame)
        pacer.frameTaken(pacer.nextDeadline() + 3ms);
    EXPECT_EQ(pacer.nextDeadline(), start + 601 * interval);
}

TEST(FramePacer, StartsANewGridAfterARest) {
    FramePacer pacer(interval);
    pacer.frameTaken(start);
    const HostTime afterRest = start + 5s;
    EXPECT_LT(pacer.nextDeadline(), afterRest);
    pacer.frameTaken(afterRest);
    EXPECT_EQ(pacer.nextDeadline(), afterRest + interval) << "no burst to catch up";
}

} // namespace
} // namespace vantro
