#include "editor/bars/BarsFixture.h"

#include <QAccessible>
#include <ranges>

namespace vantro::editor::bars {
namespace {

/// A key, where the playhead is before it, and what it makes of one piece.
struct KeyCase {
    const char* name;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    double from;
    double to;
    Pieces pieces;
};

TEST_F(TimelineBarsTest, EachKeyDoesWhatTheTableSays) {
    open();
    const Pieces whole{{0, 1}};
    const Pieces halves{{0, 0.5}, {0.5, 1}};
    for (const auto& c : std::vector<KeyCase>{
             {"left", Qt::Key_Left, {}, 2, 1, whole},
             {"left at the start", Qt::Key_Left, {}, 0.4, 0, whole},
             {"right", Qt::Key_Right, {}, 2, 3, whole},
             {"right near the end", Qt::Key_Right, {}, 3.5, 4, whole},
             {"picture back", Qt::Key_Comma, {}, 2, 1.9, whole},
             {"picture on", Qt::Key_Period, {}, 2, 2.1, whole},
             {"home", Qt::Key_Home, {}, 2, 0, whole},
             {"end", Qt::Key_End, {}, 2, 4, whole},
             {"split", Qt::Key_S, {}, 2, 2, halves},
             {"Ctrl+B", Qt::Key_B, Qt::ControlModifier, 2, 2, halves},
             {"B", Qt::Key_B, {}, 2, 2, whole},
             {"Ctrl+Shift+B", Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier, 2, 2, whole},
             {"trim start", Qt::Key_BracketLeft, {}, 1, 1, {{0.25, 1}}},
             {"trim end", Qt::Key_BracketRight, {}, 3, 3, {{0, 0.75}}},
             {"the last piece stays", Qt::Key_Delete, {}, 2, 2, whole},
         }) {
        SCOPED_TRACE(c.name);
        state.setSegments(model::fullLengthTimeline());
        state.setSelectedSegmentID(state.segments()[0].id);
        settle();
        preview.transport()->seek(c.from / 4);
        ASSERT_TRUE(playheadBecomes(c.from));
        key(c.key, c.modifiers);
        EXPECT_TRUE(playheadBecomes(c.to)) << preview.transport()->currentTime();
        EXPECT_EQ(pieces(), c.pieces);
    }
}

TEST_F(TimelineBarsTest, DeleteTakesTheZoomFirstAndATextFieldKeepsItsKeys) {
    open({zoomAt(1), zoomAt(3)}, {{.endFraction = 0.5}, {.startFraction = 0.5}});
    item("recordingName").forceActiveFocus();
    state.setSelectedClickID(zoom(0).id);
    state.setSelectedSegmentID(state.segments()[0].id);
    const auto steps = undoName();
    for (const auto typed : {Qt::Key_S, Qt::Key_Home, Qt::Key_Left, Qt::Key_Delete,
                             Qt::Key_BracketLeft, Qt::Key_Space})
        key(typed);
    EXPECT_FALSE(preview.transport()->isPlaying());
    key(Qt::Key_B, Qt::ControlModifier);
    EXPECT_EQ(undoName(), steps);
    EXPECT_NE(state.recordingName(), "demo");
    key(Qt::Key_Escape);
    key(Qt::Key_Delete);
    EXPECT_EQ(state.editableClickEvents().size(), 1U);
    EXPECT_EQ(state.segments().size(), 2U);
    key(Qt::Key_Delete);
    EXPECT_EQ(state.segments().size(), 1U);
    key(Qt::Key_Question, Qt::ShiftModifier);
    EXPECT_TRUE(shows("keyboardHelp"));
}

/// What assistive technology finds of a bar, by name.
std::vector<QAccessibleInterface*> found(QAccessibleInterface* root, const QString& name) {
    std::vector<QAccessibleInterface*> result;
    for (int i = 0; i < root->childCount(); ++i) {
        auto* child = root->child(i);
        if (child->text(QAccessible::Name) == name)
            result.push_back(child);
        for (auto* deeper : found(child, name))
            result.push_back(deeper);
    }
    return result;
}

TEST_F(TimelineBarsTest, AssistiveTechnologyReachesEachOfManyZoomsOutOfView) {
    std::vector<model::ClickEvent> zooms;
    for (int i = 0; i < 2'000; ++i)
        zooms.push_back(zoomAt(0.001 + i * 0.001999, 0.07, 0.07));
    const auto last = zooms.back();
    open(zooms);
    actions.timeline()->magnify(20, 0);
    settle();
    auto* root = QAccessible::queryAccessibleInterface(&item("timeline"));
    auto* bar = found(root, "Zooms").at(0);
    ASSERT_EQ(bar->childCount(), 2'000);
    auto* block = bar->child(1'999);
    EXPECT_EQ(bar->indexOfChild(block), 1'999);
    EXPECT_TRUE(block->state().offscreen);
    EXPECT_TRUE(block->rect().isEmpty());
    auto* action = block->actionInterface();
    ASSERT_NE(action, nullptr);
    action->doAction(QAccessibleActionInterface::setFocusAction());
    settle();
    EXPECT_FALSE(block->state().offscreen) << "it has come into view";
    EXPECT_TRUE(block->state().focused);
    EXPECT_EQ(state.selectedClickID(), last.id);
    auto* remove = found(block, "Delete " + block->text(QAccessible::Name)).at(0);
    EXPECT_EQ(remove->role(), QAccessible::Button);
    remove->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(bar->childCount(), 1'999);
    EXPECT_EQ(state.editableClickEvents().size(), 1'999U);
    EXPECT_EQ(timeline::findZoom(state.editableClickEvents(), last.id), nullptr);
    EXPECT_FALSE(block->isValid());
}

TEST_F(TimelineBarsTest, AFocusedBlockHasTheArrowsUntilEscapeGivesThemBack) {
    open({zoomAt(1), zoomAt(3)});
    state.setSelectedClickID(zoom(1).id);
    settle();
    const auto focusBlock = [this] {
        for (int i = 0; i < 40; ++i) {
            key(Qt::Key_Tab);
            auto* focused = window().activeFocusItem();
            if (focused->property("name").toString().startsWith("Zoom"))
                return true;
        }
        return false;
    };
    ASSERT_TRUE(focusBlock());
    key(Qt::Key_Left);
    EXPECT_NEAR(zoom(1).timestamp, 2.9, 1e-9);
    key(Qt::Key_Left, Qt::ShiftModifier); // a picture, of which there are ten a second
    key(Qt::Key_Left);
    EXPECT_NEAR(zoom(1).timestamp, 2.7, 1e-9);
    key(Qt::Key_Up);
    EXPECT_EQ(state.selectedClickID(), zoom(0).id);
    EXPECT_EQ(window().activeFocusItem()->property("name").toString(), "Zoom 1.5x at 0:01");
    key(Qt::Key_Escape);
    key(Qt::Key_Right);
    EXPECT_TRUE(playheadBecomes(1));
    EXPECT_NEAR(zoom(0).timestamp, 1, 1e-9);
    EXPECT_NEAR(zoom(1).timestamp, 2.7, 1e-9);
}

} // namespace
} // namespace vantro::editor::bars
