#include "editor/bars/BarsFixture.h"

namespace vantro::editor::bars {
namespace {

TEST_F(TimelineBarsTest, AZoomIsSelectedMovedAndStretchedAndEachDragIsOneStep) {
    open({zoomAt(1), zoomAt(3)});
    tap("zoomBar", 1);
    EXPECT_EQ(state.selectedClickID(), zoom(0).id);
    EXPECT_FALSE(state.document().canUndo()) << "a click moves nothing";
    drag("zoomBar", 1, 1.6);
    EXPECT_NEAR(zoom(0).timestamp, 1.6, pixel);
    EXPECT_EQ(undoName(), "Move Zoom");
    drag("zoomBar", 1.11, 0.8); // its left handle
    EXPECT_NEAR(zoom(0).startOffset, 0.81, 2 * pixel);
    EXPECT_EQ(undoName(), "Change Lead-In");
    drag("zoomBar", 2.09, 3.5); // its right one, against the other zoom
    EXPECT_NEAR(zoom(0).endOffset, 0.9, 2 * pixel);
    for (const double time : {1.6, 1.6, 1.0}) {
        key(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_NEAR(zoom(0).timestamp, time, pixel);
    }
    EXPECT_FALSE(state.document().canUndo());
    EXPECT_DOUBLE_EQ(zoom(0).startOffset, 0.5);
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_NEAR(zoom(0).timestamp, 1.6, pixel);
}

TEST_F(TimelineBarsTest, ADragThatComesBackOrIsTakenBackLeavesNoStep) {
    open({zoomAt(1)});
    const auto before = state.editableClickEvents();
    QTest::mousePress(&window(), Qt::LeftButton, {}, at("zoomBar", 1));
    QTest::mouseMove(&window(), at("zoomBar", 2));
    EXPECT_NEAR(zoom(0).timestamp, 2, pixel);
    QTest::mouseMove(&window(), at("zoomBar", 1));
    EXPECT_EQ(state.editableClickEvents(), before);
    QTest::mouseMove(&window(), at("zoomBar", 2));
    key(Qt::Key_Escape);
    EXPECT_EQ(state.editableClickEvents(), before);
    EXPECT_FALSE(state.document().canUndo());
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, at("zoomBar", 2));
    EXPECT_EQ(state.editableClickEvents(), before);
}

TEST_F(TimelineBarsTest, ADoubleClickOnTheEmptyBarAddsAZoomWhereThePointerWas) {
    model::RecordingMetadata metadata;
    metadata.cursorPositions = {{.x = 10, .y = 20, .timestamp = 2},
                                {.x = 30, .y = 60, .timestamp = 4}};
    open({zoomAt(1)}, {model::TimelineSegment{}}, metadata);
    QTest::mouseDClick(&window(), Qt::LeftButton, {}, at("zoomBar", 3));
    settle();
    ASSERT_EQ(state.editableClickEvents().size(), 2U);
    EXPECT_NEAR(zoom(1).timestamp, 3, pixel);
    EXPECT_NEAR(zoom(1).x, 20, 0.2);
    EXPECT_NEAR(zoom(1).y, 40, 0.2);
    EXPECT_EQ(state.selectedClickID(), zoom(1).id);
    EXPECT_EQ(undoName(), "Add Zoom");
    QTest::mouseDClick(&window(), Qt::LeftButton, {}, at("zoomBar", 3)); // on a block
    EXPECT_EQ(state.editableClickEvents().size(), 2U);
}

TEST_F(TimelineBarsTest, RecomputingAsksBeforeItDropsZoomsMadeByHand) {
    model::RecordingMetadata metadata;
    metadata.endTime = 4;
    metadata.clickEvents = {zoomAt(2)};
    const auto fresh = model::freshEdit(metadata).clickEvents;
    open(fresh.list(), {model::TimelineSegment{}}, metadata);
    drag("zoomBar", 2, 2.3);
    click("recomputeZooms");
    EXPECT_EQ(state.editableClickEvents(), fresh);
    tap("zoomBar", 2);
    key(Qt::Key_Delete);
    QTest::mouseDClick(&window(), Qt::LeftButton, {}, at("zoomBar", 1));
    settle();
    click("recomputeZooms");
    EXPECT_TRUE(shows("recomputeCard"));
    click("rejectButton");
    EXPECT_NE(state.editableClickEvents(), fresh);
    click("recomputeZooms");
    click("acceptButton");
    EXPECT_EQ(state.editableClickEvents(), fresh);
    EXPECT_EQ(undoName(), "Recompute Zooms");
}

} // namespace
} // namespace vantro::editor::bars
