#include "timeline/ZoomRules.h"

#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>

namespace vantro::timeline {
namespace {

using model::ClickEvent;

constexpr double duration = 20;

ClickEvent zoomAt(double time, double leadIn, double leadOut) {
    return {.timestamp = time, .startOffset = leadIn, .endOffset = leadOut};
}

ClickEvent silencedAt(double time) {
    return zoomAt(time, 0.05, 0.05);
}

struct DragCase {
    const char* name;
    Zooms (*drag)(const ZoomDrag&, double);
    double delta;
    double timestamp, leadIn, leadOut; ///< of the middle zoom then
};

// Zooms at 3 (to 4), 8 (7 to 9.5) and 14 (from 13), with a silenced click between the last two.
TEST(ZoomDragTest, StopsAtActiveNeighborsTheRecordingsEndsAndTheShortestLead) {
    const Zooms zooms =
        std::vector{zoomAt(3, 1, 1), zoomAt(8, 1, 1.5), silencedAt(12), zoomAt(14, 1, 1)};
    const DragCase cases[] = {
        {"moved", moved, 1, 9, 1, 1.5},
        {"to the left neighbor", moved, -9, 5, 1, 1.5},
        {"past a silenced click to the right neighbor", moved, 9, 11.5, 1, 1.5},
        {"longer lead-in", withStartMoved, -0.5, 8, 1.5, 1.5},
        {"lead-in to the neighbor", withStartMoved, -9, 8, 4, 1.5},
        {"shortest lead-in", withStartMoved, 5, 8, 0.1, 1.5},
        {"lead-out to the neighbor", withEndMoved, 9, 8, 1, 5},
        {"shortest lead-out", withEndMoved, -9, 8, 1, 0.1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Zooms result = c.drag({zooms, zooms[1].id, duration}, c.delta);
        const ClickEvent* zoom = findZoom(result, zooms[1].id);
        ASSERT_NE(zoom, nullptr);
        EXPECT_DOUBLE_EQ(zoom->timestamp, c.timestamp);
        EXPECT_DOUBLE_EQ(zoom->startOffset, c.leadIn);
        EXPECT_DOUBLE_EQ(zoom->endOffset, c.leadOut);
    }
    const auto last = zooms[3].id;
    EXPECT_DOUBLE_EQ(findZoom(moved({zooms, last, duration}, 99), last)->timestamp, 19);
    EXPECT_DOUBLE_EQ(findZoom(withEndMoved({zooms, last, duration}, 99), last)->endOffset, 6);
    const auto first = zooms[0].id;
    EXPECT_DOUBLE_EQ(findZoom(moved({zooms, first, duration}, -99), first)->timestamp, 1);
    EXPECT_EQ(moved({zooms, first, duration}, 0), zooms);
}

TEST(ZoomDragTest, AMergedZoomTakesItsSilencedClicksAlong) {
    const Zooms zooms =
        std::vector{zoomAt(3, 1, 2.5), silencedAt(4), silencedAt(5.5), silencedAt(7)};
    const Zooms result = moved({zooms, zooms[0].id, duration}, 4);
    EXPECT_DOUBLE_EQ(findZoom(result, zooms[1].id)->timestamp, 8);
    EXPECT_DOUBLE_EQ(findZoom(result, zooms[2].id)->timestamp, 9.5);
    EXPECT_DOUBLE_EQ(findZoom(result, zooms[3].id)->timestamp, 7) << "outside of the zoom";
    EXPECT_TRUE(std::ranges::is_sorted(result, {}, &ClickEvent::timestamp));
}

TEST(ZoomListTest, DeletingAMergedZoomDeletesItsSilencedClicksAndTheDeleteKeyOnlyItself) {
    const Zooms zooms = std::vector{zoomAt(3, 1, 2.5), silencedAt(4),    zoomAt(5, 0.5, 0.5),
                                    silencedAt(5.5),   silencedAt(5.51), silencedAt(2)};
    std::vector kept{zooms[2], zooms[4], zooms[5]};
    EXPECT_EQ(withoutZoom(zooms, zooms[0].id).list(), kept);
    EXPECT_EQ(withoutEvent(zooms, zooms[0].id).size(), 5U);
}

TEST(ZoomListTest, ANewZoomFillsTheRoomThereIsAndNeedsTheShortestLeads) {
    const Zooms zooms = std::vector{zoomAt(3, 1, 1), zoomAt(6.5, 1, 1)};
    const auto added = withZoomAt(zooms, 4.5, {30, 40}, duration);
    ASSERT_TRUE(added);
    EXPECT_EQ(added->zooms[1].id, added->id);
    EXPECT_DOUBLE_EQ(added->zooms[1].startOffset, 0.5);
    EXPECT_DOUBLE_EQ(added->zooms[1].endOffset, 1);
    EXPECT_DOUBLE_EQ(added->zooms[1].x, 30);
    EXPECT_TRUE(hasHandmade(added->zooms, zooms));
    EXPECT_FALSE(hasHandmade(withoutZoom(zooms, zooms[0].id), zooms));
    for (const double full : {3.5, 4.05, 5.45, 0.05, 19.95, std::nan("")})
        EXPECT_FALSE(withZoomAt(zooms, full, {}, duration)) << full;
    EXPECT_TRUE(withZoomAt(zooms, 0.2, {}, duration));
}

TEST(ZoomListTest, ValuesAreLimitedForOneAndForAll) {
    const Zooms zooms = std::vector{zoomAt(3, 1, 1), silencedAt(3.5), zoomAt(6, 1, 1)};
    const Zooms one =
        changed(zooms, zooms[2].id, {.level = 9, .leadIn = 9, .center = {{5, 6}}}, duration);
    EXPECT_EQ(one[2].zoomLevel, highestLevel);
    EXPECT_DOUBLE_EQ(one[2].startOffset, 2);
    EXPECT_EQ(one[2].y, 6);
    EXPECT_EQ(one[0], zooms[0]);
    const Zooms all =
        allChanged(zooms, {.level = 2, .leadIn = 0, .leadOut = 9, .center = {{5, 6}}}, duration);
    EXPECT_EQ(all[1], zooms[1]) << "silenced";
    for (const std::size_t index : {0U, 2U}) {
        EXPECT_EQ(all[index].zoomLevel, 2);
        EXPECT_EQ(all[index].startOffset, shortestLead);
        EXPECT_EQ(all[index].x, 0);
    }
    EXPECT_DOUBLE_EQ(all[0].endOffset, 2) << "up to the next as it stood";
}

TEST(ZoomPlaceTest, BlocksStandAtTheirSourceTimesWhereTheFilmShowsTheClick) {
    const std::vector<model::TimelineSegment> segments{{.startFraction = 0.1, .endFraction = 0.4},
                                                       {.startFraction = 0.6, .endFraction = 0.9}};
    EXPECT_EQ(placeOf(zoomAt(4, 1, 2), segments, 20), (ZoomPlace{0.15, 0.3}));
    EXPECT_EQ(placeOf(zoomAt(2.5, 1.5, 1), segments, 20), (ZoomPlace{0.1, 0.175}));
    EXPECT_EQ(placeOf(zoomAt(17, 1, 2), segments, 20), (ZoomPlace{0.8, 0.9}));
    EXPECT_EQ(placeOf(zoomAt(10, 1, 1), segments, 20), std::nullopt) << "in a gap";
    EXPECT_EQ(placeOf(silencedAt(4), segments, 20), std::nullopt);
    EXPECT_EQ(placeOf(zoomAt(4, 1, 1), {}, 20), std::nullopt);
    EXPECT_EQ(placeOf(zoomAt(0, 1, 1), segments, 0), std::nullopt);
    EXPECT_EQ(levelLabel(2), "2.0x");
}

} // namespace
} // namespace vantro::timeline
