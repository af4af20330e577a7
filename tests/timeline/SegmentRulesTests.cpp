#include "timeline/SegmentRules.h"

#include <cmath>

#include <gmock/gmock.h>

namespace vantro::timeline {
namespace {

using Kind = SegmentEdge::Kind;
using model::TimelineSegment;

Segments pieces(std::initializer_list<std::pair<double, double>> ranges) {
    std::vector<TimelineSegment> list;
    for (const auto& [start, end] : ranges)
        list.push_back({.startFraction = start, .endFraction = end});
    return list;
}

std::vector<std::pair<double, double>> rangesOf(const Segments& segments) {
    std::vector<std::pair<double, double>> ranges;
    for (const auto& segment : segments)
        ranges.emplace_back(segment.startFraction, segment.endFraction);
    return ranges;
}

TEST(SegmentEdgeTest, TouchingPiecesShareOneAndAtAGapEachMovesAlone) {
    const Segments segments = pieces({{0.1, 0.3}, {0.3, 0.5}, {0.7, 0.9}});
    const auto edges = edgesOf(segments);
    const std::vector<SegmentEdge> expected{{Kind::start, 0, 0.1},
                                            {Kind::cut, 0, 0.3},
                                            {Kind::end, 1, 0.5},
                                            {Kind::start, 2, 0.7},
                                            {Kind::end, 2, 0.9}};
    ASSERT_EQ(edges, expected);
    struct Case {
        std::size_t edge;
        double to;
        std::vector<std::pair<double, double>> result;
    };
    const Case cases[] = {
        {0, -1, {{0, 0.3}, {0.3, 0.5}, {0.7, 0.9}}},
        {0, 0.6, {{0.295, 0.3}, {0.3, 0.5}, {0.7, 0.9}}},
        {1, 0.2, {{0.1, 0.2}, {0.2, 0.5}, {0.7, 0.9}}},
        {1, 0.9, {{0.1, 0.495}, {0.495, 0.5}, {0.7, 0.9}}},
        {1, 0, {{0.1, 0.105}, {0.105, 0.5}, {0.7, 0.9}}},
        {2, 0.8, {{0.1, 0.3}, {0.3, 0.7}, {0.7, 0.9}}},
        {2, 0, {{0.1, 0.3}, {0.3, 0.305}, {0.7, 0.9}}},
        {3, 0.1, {{0.1, 0.3}, {0.3, 0.5}, {0.5, 0.9}}},
        {4, 2, {{0.1, 0.3}, {0.3, 0.5}, {0.7, 1}}},
        {4, std::nan(""), {{0.1, 0.3}, {0.3, 0.5}, {0.7, 0.9}}},
    };
    for (const auto& c : cases) {
        const auto result = rangesOf(withEdgeMoved(segments, edges[c.edge], c.to));
        ASSERT_EQ(result.size(), c.result.size());
        for (std::size_t i = 0; i < result.size(); ++i) {
            EXPECT_DOUBLE_EQ(result[i].first, c.result[i].first) << c.edge << " to " << c.to;
            EXPECT_DOUBLE_EQ(result[i].second, c.result[i].second) << c.edge << " to " << c.to;
        }
    }
}

TEST(SplitTest, MakesTwoPiecesWithTheSpeedUnlessOneWouldBeTooShort) {
    const Segments segments = std::vector<TimelineSegment>{
        {.startFraction = 0.25, .endFraction = 0.5, .speed = 2}, {.startFraction = 0.5}};
    const auto result = split(segments, 0.375);
    ASSERT_TRUE(result);
    EXPECT_EQ(rangesOf(result->segments),
              (std::vector<std::pair<double, double>>{{0.25, 0.375}, {0.375, 0.5}, {0.5, 1}}));
    EXPECT_EQ(result->segments[1].speed, 2);
    EXPECT_NE(result->left, result->right);
    EXPECT_NE(result->left, segments[0].id);
    for (const double place : {0.25, 0.5, 0.254, 0.497, 0.1, std::nan("")})
        EXPECT_FALSE(split(segments, place)) << place;
    EXPECT_TRUE(split(segments, 0.25 + shortestPiece));
    EXPECT_FALSE(split(pieces({{0.1, 0.109}}), 0.1045));
}

TEST(SegmentListTest, OnePieceAlwaysStaysAndSpeedsAreLimited) {
    const Segments two = pieces({{0, 0.5}, {0.5, 1}});
    const Segments one = withoutSegment(two, two[0].id);
    EXPECT_EQ(rangesOf(one), (std::vector<std::pair<double, double>>{{0.5, 1}}));
    EXPECT_EQ(withoutSegment(one, one[0].id), one);
    EXPECT_EQ(withSpeed(two, two[1].id, 99)[1].speed, fastestSpeed);
    EXPECT_EQ(withSpeed(two, two[1].id, 0)[1].speed, slowestSpeed);
    EXPECT_EQ(withSpeed(two, two[1].id, std::nan("")), two);
}

TEST(RangeCutTest, CutsOutAnythingButNeverLeavesAPieceThatIsTooShort) {
    constexpr double frame = 0.001;
    const Segments segments = pieces({{0, 0.4}, {0.4, 0.8}});
    using Ranges = std::vector<std::pair<double, double>>;
    EXPECT_EQ(rangesOf(*withRangeCut(segments, 0.2, 0.201, frame)),
              (Ranges{{0, 0.2}, {0.201, 0.4}, {0.4, 0.8}}));
    EXPECT_EQ(rangesOf(*withRangeCut(segments, 0.6, 0.2, frame)), (Ranges{{0, 0.2}, {0.6, 0.8}}));
    EXPECT_EQ(rangesOf(*withRangeCut(segments, 0.0005, 0.4, frame)), (Ranges{{0.4, 0.8}}));
    EXPECT_EQ(withRangeCut(segments, 0.003, 0.2, frame).error(), CutRefusal::pieceTooShort);
    EXPECT_EQ(withRangeCut(segments, 0, 1, frame).error(), CutRefusal::nothingLeft);
    EXPECT_EQ(withRangeCut(segments, 0.8, 0.9, frame).error(), CutRefusal::nothingMarked);
    EXPECT_EQ(withRangeCut(segments, 0.3, 0.3, frame).error(), CutRefusal::nothingMarked);
    const auto both = withRangeCut(segments, 0.1, 0.2, frame);
    EXPECT_EQ((*both)[0].id, segments[0].id);
    EXPECT_NE((*both)[1].id, segments[0].id);
}

TEST(TrimTest, TheFilmBeginsAndEndsAtAnyPlaceAlsoBeyondItsFirstAndLastPiece) {
    constexpr double frame = 0.001;
    const Segments segments = pieces({{0.1, 0.4}, {0.6, 0.9}});
    using Ranges = std::vector<std::pair<double, double>>;
    EXPECT_EQ(rangesOf(*withStartAt(segments, 0.2, frame)), (Ranges{{0.2, 0.4}, {0.6, 0.9}}));
    EXPECT_EQ(rangesOf(*withStartAt(segments, 0.05, frame)), (Ranges{{0.05, 0.4}, {0.6, 0.9}}));
    EXPECT_EQ(rangesOf(*withStartAt(segments, 0.7, frame)), (Ranges{{0.7, 0.9}}));
    EXPECT_EQ(rangesOf(*withEndAt(segments, 0.7, frame)), (Ranges{{0.1, 0.4}, {0.6, 0.7}}));
    EXPECT_EQ(rangesOf(*withEndAt(segments, 1, frame)), (Ranges{{0.1, 0.4}, {0.6, 1}}));
    EXPECT_EQ(rangesOf(*withEndAt(segments, 0.2, frame)), (Ranges{{0.1, 0.2}}));
    EXPECT_EQ(withStartAt(segments, 0.95, frame).error(), CutRefusal::nothingLeft);
    EXPECT_EQ(withEndAt(segments, 0.103, frame).error(), CutRefusal::pieceTooShort);
}

} // namespace
} // namespace vantro::timeline
