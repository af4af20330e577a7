#include "capture/pictures/FramePacer.h"

#include <gtest/gtest.h>

namespace vantro::capture {
namespace {

using namespace std::chrono_literals;

constexpr base::HostDuration interval{1'000'000'000 / 60};
constexpr base::HostTime start{100s};

TEST(FramePacer, KeepsItsGridWhenAThreadWakesALittleLate) {
    pictures::FramePacer pacer(interval);
    pacer.frameTaken(start);
    for (int frame = 1; frame <= 600; ++frame)
        pacer.frameTaken(pacer.nextDeadline() + 3ms);
    EXPECT_EQ(pacer.nextDeadline(), start + 601 * interval);
}

TEST(FramePacer, StartsANewGridAfterARest) {
    pictures::FramePacer pacer(interval);
    pacer.frameTaken(start);
    const base::HostTime afterRest = start + 5s;
    EXPECT_LT(pacer.nextDeadline(), afterRest);
    pacer.frameTaken(afterRest);
    EXPECT_EQ(pacer.nextDeadline(), afterRest + interval) << "no burst to catch up";
}

} // namespace
} // namespace vantro::capture
