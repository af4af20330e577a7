#include "base/ThreadPriority.h"

#include <thread>

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/resource.h>

namespace vantro::base {
namespace {

struct Priority {
    int policy = ::sched_getscheduler(0); ///< of this thread
    int nice = ::getpriority(PRIO_PROCESS, 0);
    bool operator==(const Priority&) const = default;
};

TEST(ThreadPriority, AnIdleThreadAndThoseItStartsComeLastAndNoOther) {
    const Priority usual;
    Priority own;
    Priority started;
    std::jthread([&] {
        makeThreadIdle();
        own = {};
        std::jthread([&] { started = {}; });
    });
    EXPECT_EQ(own, (Priority{SCHED_BATCH, 19}));
    EXPECT_EQ(started, own);
    EXPECT_EQ(Priority(), usual);
}

} // namespace
} // namespace vantro::base
