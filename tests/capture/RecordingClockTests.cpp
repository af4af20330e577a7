#include "capture/session/RecordingClock.h"

#include <gtest/gtest.h>

namespace vantro::capture {
namespace {

using namespace std::chrono_literals;
using base::HostTime;

constexpr HostTime zero{1000s};

TEST(RecordingClock, LeavesOutWhatLiesOutsideOfTheMovieAndInPauses) {
    RecordingClock clock;
    EXPECT_FALSE(clock.movieTime(zero));
    clock.resume(zero - 1s); // nothing to resume
    clock.start(zero);
    clock.pause(zero + 2s);
    EXPECT_FALSE(clock.movieTime(zero + 60s)) << "paused until further notice";
    EXPECT_EQ(clock.length(zero + 60s), 2s);
    clock.pause(zero + 3s); // it is already
    clock.resume(zero + 5s);
    clock.pause(zero + 6s);
    clock.resume(zero + 6500ms);
    clock.stop(zero + 8s);
    const struct {
        base::HostDuration host;
        std::optional<base::HostDuration> movie;
    } cases[]{{-1ns, {}},     {0s, 0s},     {2s - 1ns, 2s - 1ns}, {2s, {}},
              {5s - 1ns, {}}, {5s, 2s},     {6s - 1ns, 3s - 1ns}, {6s, {}},
              {6500ms, 3s},   {8s, 4500ms}, {8s + 1ns, {}}};
    for (const auto& [host, movie] : cases)
        EXPECT_EQ(clock.movieTime(zero + host), movie) << host.count();
    EXPECT_EQ(clock.length(zero + 20s), 4500ms);
}

TEST(RecordingClock, HeldBeforeItsZeroBeginsWithWhatComesAfterwards) {
    RecordingClock clock;
    EXPECT_TRUE(clock.pause(zero - 5s));
    EXPECT_FALSE(clock.start(zero - 4s));
    EXPECT_FALSE(clock.movieTime(zero - 4s));
    EXPECT_EQ(clock.pausedFor(zero - 3s), 2s);
    EXPECT_TRUE(clock.resume(zero - 1s));
    EXPECT_FALSE(clock.start(zero - 2s)) << "of the time before, and told late";
    EXPECT_TRUE(clock.start(zero));
    clock.pause(zero + 1s);
    clock.stop(zero + 4s);
    EXPECT_EQ(clock.pausedFor(zero + 9s), 4s + 3s);
    EXPECT_EQ(clock.length(zero + 9s), 1s) << "stopped in a pause it ends where that began";
    EXPECT_FALSE(clock.movieTime(zero + 4s));
}

} // namespace
} // namespace vantro::capture
