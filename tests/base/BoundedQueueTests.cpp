#include "base/BoundedQueue.h"

#include <thread>

#include <gtest/gtest.h>

namespace vantro::base {
namespace {

TEST(BoundedQueue, KeepsTheOrderWhileProducerAndConsumerWaitForEachOther) {
    constexpr int count = 10'000;
    BoundedQueue<int> queue(3);
    std::jthread producer([&] {
        for (int i = 0; i < count; ++i)
            queue.push(i);
        queue.close();
    });
    int expected = 0;
    while (const auto item = queue.pop())
        ASSERT_EQ(*item, expected++);
    EXPECT_EQ(expected, count);
}

TEST(BoundedQueue, ReleasesThoseWhoWaitWhenItIsClosed) {
    BoundedQueue<int> full(1);
    full.push(0);
    BoundedQueue<int> empty(1);
    bool pushed = true;
    std::optional<int> popped = 1;
    {
        std::jthread producer([&] { pushed = full.push(1); });
        std::jthread consumer([&] { popped = empty.pop(); });
        full.close();
        empty.close();
    }
    EXPECT_FALSE(pushed);
    EXPECT_EQ(popped, std::nullopt);
}

} // namespace
} // namespace vantro::base
