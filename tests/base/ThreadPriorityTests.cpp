#include "base/ThreadPriority.h"

#include <thread>

#include <gtest/gtest.h>
#include <sched.h>

namespace vantro::base {
namespace {

TEST(ThreadPriority, AnIdleThreadAndThoseItStartsAreIdleAndNoOther) {
    int own = -1;
    int started = -1;
    std::jthread([&] {
        makeThreadIdle();
        own = ::sched_getscheduler(0);
        std::jthread([&] { started = ::sched_getscheduler(0); });
    });
    EXPECT_EQ(own, SCHED_IDLE);
    EXPECT_EQ(started, SCHED_IDLE);
    EXPECT_EQ(::sched_getscheduler(0), SCHED_OTHER);
}

} // namespace
} // namespace vantro::base
