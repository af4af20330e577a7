#include "render/timing/SegmentTimeMap.h"

#include <random>

#include <gtest/gtest.h>

namespace vantro::render {
namespace {

model::TimelineSegment segment(double start, double end, double speed) {
    return {
        .id = model::Uuid::random(), .startFraction = start, .endFraction = end, .speed = speed};
}

TEST(SegmentTimeMap, MapsCutsToTheInstantOfTheCut) {
    const SegmentTimeMap map({segment(0.1, 0.3, 1), segment(0.6, 0.8, 4)}, 10);
    EXPECT_DOUBLE_EQ(map.totalDuration(), 2.5);
    EXPECT_EQ(map.outputTime(0.5), 0);
    EXPECT_DOUBLE_EQ(map.outputTime(4), 2);
    EXPECT_DOUBLE_EQ(map.outputTime(9), 2.5);
    EXPECT_EQ(map.sourceTime(0), 1);
    EXPECT_EQ(map.sourceTime(99), 8);
}

TEST(SegmentTimeMap, ComesBackToWhereItStartedForAnyTimeline) {
    std::mt19937 random(3);
    std::uniform_real_distribution anyWidth(0.01, 0.1);
    std::uniform_real_distribution anySpeed(0.25, 8.0);
    for (int round = 0; round < 200; ++round) {
        std::vector<model::TimelineSegment> segments;
        double kept = 0;
        double at = anyWidth(random);
        while (at < 0.9) {
            const auto end = at + anyWidth(random);
            segments.push_back(segment(at, end, anySpeed(random)));
            kept += (end - at) * 100 / segments.back().speed;
            at = end + (round % 2 == 0 ? anyWidth(random) : 0);
        }
        const SegmentTimeMap map(segments, 100);
        EXPECT_NEAR(map.totalDuration(), kept, 1e-9);
        double previous = -1;
        for (int step = 0; step <= 200; ++step) {
            const auto output = map.totalDuration() * step / 200;
            const auto source = map.sourceTime(output);
            EXPECT_GT(source, previous);
            EXPECT_NEAR(map.outputTime(source), output, 1e-9);
            previous = source;
        }
    }
}

TEST(SegmentTimeMap, FindsSegmentsWithALittleToleranceAndTheEarlierOneAtASharedBound) {
    const SegmentTimeMap map({segment(0.1, 0.5, 1), segment(0.5, 0.8, 2)}, 10);
    const auto* first = &map.segments()[0];
    const auto* second = &map.segments()[1];
    EXPECT_EQ(map.segmentAt(0.0996), first);
    EXPECT_EQ(map.segmentAt(0.0994), nullptr);
    EXPECT_EQ(map.segmentAt(0.5), first);
    EXPECT_EQ(map.segmentAt(0.5004), first);
    EXPECT_EQ(map.segmentAt(0.5006), second);
    EXPECT_EQ(map.segmentAt(0.8004), second);
    EXPECT_EQ(map.segmentAt(0.8006), nullptr);
}

} // namespace
} // namespace vantro::render
