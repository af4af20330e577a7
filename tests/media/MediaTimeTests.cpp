#include "media/values/MediaTime.h"

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

TEST(MediaTime, isFoundAgainInItsSeconds) {
    for (const MediaTime time : {MediaTime{1, 60}, {0, 1}, {7, 1}, {1001, 30'000}, {-1, 3}})
        EXPECT_EQ(MediaTime::simplestOf(time.seconds()), time);
    for (std::int64_t value = 1; value < 1'000'000'000; value = value * 3 + 1)
        for (const std::int32_t timescale : {11, 600, 15'360, 44'100, 90'000}) {
            const MediaTime time{value, timescale};
            if (time.seconds() < 36'000) {
                EXPECT_EQ(MediaTime::simplestOf(time.seconds()), time) << value << "/" << timescale;
            }
        }
    EXPECT_EQ(MediaTime::simplestOf(0.1 + 0.2).seconds(), 0.3); // nobody's exact time
    EXPECT_NEAR(MediaTime::simplestOf(3.14159265358979).seconds(), 3.14159265358979, 1e-9);
}

} // namespace
} // namespace vantro::media
