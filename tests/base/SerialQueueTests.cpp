#include "base/SerialQueue.h"

#include <array>
#include <numeric>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>
#include <pthread.h>

namespace vantro::base {
namespace {

TEST(SerialQueue, RunsTasksOfSeveralThreadsOneAtATimeAndEachThreadsInOrder) {
    constexpr int threads = 4;
    constexpr int perThread = 2'000;
    std::array<std::vector<int>, threads> seen; // unguarded: the queue is the guard
    int inside = 0;
    bool overlapped = false;
    {
        SerialQueue queue("com.vantro.test");
        {
            std::vector<std::jthread> submitters;
            for (std::size_t thread = 0; thread < threads; ++thread) {
                submitters.emplace_back([&, thread] {
                    for (int i = 0; i < perThread; ++i) {
                        queue.async([&, thread, i] {
                            overlapped = overlapped || ++inside != 1;
                            seen[thread].push_back(i);
                            --inside;
                        });
                    }
                });
            }
        }
    } // destruction runs what is queued
    std::vector<int> inOrder(perThread);
    std::iota(inOrder.begin(), inOrder.end(), 0);
    for (const auto& list : seen)
        EXPECT_EQ(list, inOrder);
    EXPECT_FALSE(overlapped);
}

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
