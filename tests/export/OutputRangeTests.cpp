#include "export/OutputRange.h"

#include <gtest/gtest.h>

namespace vantro::exporting {
namespace {

TEST(OutputRange, CutsSegmentsWhereTheOutputPlaysThem) {
    // 10 s of source: 2 s at double speed play 1 s, then a cut, then 3 s at half
    // speed play 6 s.
    const std::vector<model::TimelineSegment> segments{
        {.startFraction = 0, .endFraction = 0.2, .speed = 2},
        {.startFraction = 0.5, .endFraction = 0.8, .speed = 0.5}};
    const auto parts = segmentsWithin(segments, 10, 0.5, 3);
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_DOUBLE_EQ(parts[0].startFraction, 0.1);
    EXPECT_EQ(parts[0].endFraction, 0.2);
    EXPECT_EQ(parts[0].speed, 2);
    EXPECT_EQ(parts[1].startFraction, 0.5);
    EXPECT_DOUBLE_EQ(parts[1].endFraction, 0.6);
    EXPECT_EQ(parts[1].speed, 0.5);
    EXPECT_EQ(segmentsWithin(segments, 10, 0, 1e9), segments);
    EXPECT_TRUE(segmentsWithin(segments, 10, 7, 8).empty());
}

} // namespace
} // namespace vantro::exporting
