#include "media/values/MediaTime.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace vantro::media {
namespace {

TEST(MediaTime, sumsAndComparisonsAreExactAcrossTimescales) {
    const MediaTime third{1, 3};
    EXPECT_EQ(third + third + third, (MediaTime{1, 1}));
    EXPECT_GT((MediaTime{333'333'334, 1'000'000'000}), third);
    EXPECT_LT((MediaTime{333'333'333, 1'000'000'000}), third);
    EXPECT_EQ((MediaTime{1001, 30'000} - MediaTime{1, 600}), (MediaTime{951, 30'000}));
    const auto far = std::numeric_limits<std::int64_t>::max();
    EXPECT_LT((MediaTime{far - 1, 1'000'000'007}), (MediaTime{far, 1'000'000'007}));
    EXPECT_GT((MediaTime{far, 999}), (MediaTime{far, 1000}));
}

TEST(MediaTime, roundsToTheNearestTickHalvesAwayFromZero) {
    EXPECT_EQ(MediaTime::fromSeconds(0.1).value, 60);
    EXPECT_EQ(MediaTime::fromSeconds(1.0 / 1200).value, 1);
    EXPECT_EQ(MediaTime::fromSeconds(-1.0 / 1200).value, -1);
    EXPECT_EQ((MediaTime{1, 1200}).rescaled(600).value, 1);
    EXPECT_EQ((MediaTime{-1, 1200}).rescaled(600).value, -1);
    EXPECT_EQ((MediaTime{-1, 1201}).rescaled(600).value, 0);
    EXPECT_EQ((MediaTime{7'200'000'000'001, 1'000'000'000}).rescaled(60'000).value, 432'000'000);
}

TEST(MediaTimeDeathTest, arithmeticThatLeavesTheRangeIsFatal) {
    const MediaTime farthest{std::numeric_limits<std::int64_t>::max(), 600};
    EXPECT_DEATH(farthest + farthest, "range");
    EXPECT_DEATH(farthest.rescaled(60'000), "range");
    EXPECT_DEATH(MediaTime::fromSeconds(std::nan("")), "not finite");
}

} // namespace
} // namespace vantro::media
