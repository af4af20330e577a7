#include "base/WorkerPool.h"

#include <atomic>
#include <stdexcept>
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

TEST(WorkerPool, PassesOnWhatALoopThrowsAndWorksOn) {
    WorkerPool pool(3);
    for (int round = 0; round < 20; ++round) {
        std::atomic<int> inside{0};
        EXPECT_THROW(pool.forEach(100,
                                  [&](std::size_t index, unsigned) {
                                      ++inside;
                                      if (index % 7 == 3) {
                                          --inside;
                                          throw std::runtime_error("broken");
                                      }
                                      --inside;
                                  }),
                     std::runtime_error);
        EXPECT_EQ(inside, 0); // nobody works on what the caller has left
    }
    std::atomic<int> calls{0};
    pool.forEach(9, [&](std::size_t, unsigned) { ++calls; });
    EXPECT_EQ(calls, 9);
}

} // namespace
} // namespace vantro::base
