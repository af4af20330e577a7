#include "base/SerialQueue.h"

#include <gtest/gtest.h>

namespace vantro::base {
namespace {

TEST(SerialQueueDeathTest, SyncFromItsOwnThreadIsFatalInsteadOfADeadlock) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            SerialQueue queue("com.vantro.test");
            queue.sync([&] { queue.sync([] {}); });
        },
        "own thread");
}

} // namespace
} // namespace vantro::base
