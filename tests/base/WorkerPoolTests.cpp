#include "base/WorkerPool.h"

#include <atomic>
#include <stdexcept>

#include <gtest/gtest.h>

namespace vantro::base {
namespace {

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
