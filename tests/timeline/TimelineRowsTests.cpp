#include "timeline/TimelineRows.h"

#include <gmock/gmock.h>

namespace vantro::timeline {
namespace {

using model::ClickEvent;
using model::TimelineSegment;

constexpr double duration = 100;
constexpr double handle = 8;
constexpr TimeAxis wholeAxis{.width = 1000}; // ten points a second

ClickEvent zoomAt(double time, double lead) {
    return {.timestamp = time, .startOffset = lead, .endOffset = lead};
}

const Segments whole = std::vector{TimelineSegment{}};

TEST(ZoomRowsTest, NarrowZoomsRunTogetherButForTheSelectedOneAndAreFoundByTheirTime) {
    std::vector<ClickEvent> list{zoomAt(5, 2)};
    for (int i = 0; i < 20; ++i)
        list.push_back(zoomAt(20 + 0.4 * i, 0.2));
    const Zooms zooms = list;
    const auto together = zoomRows(zooms, whole, duration, wholeAxis, {});
    ASSERT_EQ(together.size(), 2U);
    EXPECT_EQ(together[0].count, 1);
    EXPECT_EQ(together[1].count, 20);
    EXPECT_NEAR(together[1].width, 80, 1e-9);
    const double x = wholeAxis.xOf((20 + 0.4 * 7) / duration);
    const auto hit = zoomAt(together, zooms, wholeAxis, duration, x + 1, handle);
    EXPECT_EQ(hit, (ZoomHit{zooms[8].id, ZoomPart::body}));

    const auto rows = zoomRows(zooms, whole, duration, wholeAxis, zooms[8].id);
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[1].count + rows[2].count + rows[3].count, 20);
    EXPECT_TRUE(rows[2].isSelected);
    const TimeAxis near = wholeAxis.magnified(50, x, 0);
    for (const auto& row : zoomRows(zooms, whole, duration, near, {}))
        EXPECT_EQ(row.count, 1) << "magnified, each stands for itself";
}

TEST(ZoomHitTest, HandlesLieInsideWideBlocksAndOutsideNarrowOnesThatAreSelected) {
    const Zooms zooms = std::vector{zoomAt(10, 4), zoomAt(50, 0.5)};
    struct Case {
        double x;
        std::size_t zoom;
        std::optional<ZoomPart> part; ///< with the narrow one selected
        std::optional<ZoomPart> unselected;
    };
    for (const auto& c : std::vector<Case>{
             {61, 0, ZoomPart::start, ZoomPart::start},
             {100, 0, ZoomPart::body, ZoomPart::body},
             {139, 0, ZoomPart::end, ZoomPart::end},
             {150, 0, {}, {}},
             {490, 1, ZoomPart::start, {}},
             {493, 1, ZoomPart::start, ZoomPart::body}, // near enough
             {500, 1, ZoomPart::body, ZoomPart::body},
             {510, 1, ZoomPart::end, {}},
         }) {
        for (const bool isSelected : {true, false}) {
            const auto rows = zoomRows(zooms, whole, duration, wholeAxis,
                                       isSelected ? std::optional(zooms[1].id) : std::nullopt);
            const auto hit = zoomAt(rows, zooms, wholeAxis, duration, c.x, handle);
            const auto& part = isSelected ? c.part : c.unselected;
            ASSERT_EQ(hit.has_value(), part.has_value()) << c.x << isSelected;
            if (hit) {
                EXPECT_EQ(*hit, (ZoomHit{zooms[c.zoom].id, *part})) << c.x << isSelected;
            }
        }
    }
}

TEST(SegmentRowsTest, GapsFillWhatPiecesLeaveAndTheNearestEdgeIsHit) {
    const Segments segments =
        std::vector<TimelineSegment>{{.startFraction = 0.1, .endFraction = 0.3},
                                     {.startFraction = 0.3, .endFraction = 0.5},
                                     {.startFraction = 0.506, .endFraction = 1}};
    EXPECT_EQ(gapRows(segments, wholeAxis), (std::vector<GapRow>{{0, 100}, {500, 6}}));
    const auto edges = edgeRows(segments, duration, wholeAxis);
    using Kind = SegmentEdge::Kind;
    const auto kindAt = [&](double x) {
        const auto hit = edgeAt(edges, x, handle);
        return hit ? std::optional(hit->kind) : std::nullopt;
    };
    EXPECT_EQ(kindAt(104), Kind::start);
    EXPECT_EQ(kindAt(297), Kind::cut);
    EXPECT_EQ(kindAt(501), Kind::end);
    EXPECT_EQ(kindAt(505), Kind::start);
    EXPECT_EQ(kindAt(503), std::nullopt) << "between two that stand close";
    EXPECT_EQ(kindAt(200), std::nullopt);
    const std::vector<TimelineSegment> crumbs{{.endFraction = 0.5},
                                              {.startFraction = 0.5, .endFraction = 0.502},
                                              {.startFraction = 0.502}};
    EXPECT_EQ(edgeRows(crumbs, duration, wholeAxis).size(), 2U) << "too crowded to be drawn";
    EXPECT_EQ(edgeRows(crumbs, duration, wholeAxis, 1).size(), 4U) << "but reached by the keyboard";
    const TimeAxis part{.start = 0.4, .span = 0.2, .width = 1000};
    EXPECT_EQ(segmentRows(segments, part, segments[2].id).size(), 2U);
    EXPECT_TRUE(segmentRows(segments, part, segments[2].id)[1].isSelected);
    EXPECT_EQ(edgeRows(segments, duration, part).size(), 2U);
}

} // namespace
} // namespace vantro::timeline
