#include "base/WorkerPool.h"

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace vantro::base {
namespace {

TEST(WorkerPool, CallsEachIndexOnceInEveryLoopWithAWorkerNumberOfItsOwn) {
    WorkerPool pool(4);
    ASSERT_EQ(pool.workerCount(), 4U);
    for (const std::size_t count : {0UL, 1UL, 3UL, 4UL, 1'000UL, 7UL}) {
        std::vector<std::atomic<int>> calls(count);
        std::vector<std::atomic<int>> busy(pool.workerCount());
        std::atomic<int> collisions{0};
        for (int round = 0; round < 50; ++round) {
            pool.forEach(count, [&](std::size_t index, unsigned worker) {
                if (busy.at(worker).fetch_add(1) != 0)
                    ++collisions;
                ++calls.at(index);
                --busy.at(worker);
            });
        }
        for (const auto& number : calls)
            EXPECT_EQ(number, 50);
        EXPECT_EQ(collisions, 0);
    }
}

} // namespace
} // namespace vantro::base
