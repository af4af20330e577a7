#include "window/WindowFixture.h"

#include <QAccessible>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>

namespace vantro::editor::bars {
namespace {

using model::ClickEvent;

/// The bars under a real pointer and keyboard. The recording is four seconds long.
class TimelineBarsTest : public test::WindowFixture {
  protected:
    void open(std::vector<ClickEvent> zooms = {},
              std::vector<model::TimelineSegment> segments = {model::TimelineSegment{}}) {
        showWindow();
        model::Edit edit;
        edit.clickEvents = std::move(zooms);
        edit.segments = std::move(segments);
        showEditor(edit);
        ASSERT_TRUE(QTest::qWaitFor([this] { return preview.transport()->duration() > 0; }));
        settle();
    }
    static ClickEvent zoomAt(double time, double leadIn = 0.5, double leadOut = 0.5) {
        return {.timestamp = time, .startOffset = leadIn, .endOffset = leadOut};
    }

    /// A second of the recording on a bar, in window coordinates.
    QPoint at(const char* bar, double seconds) {
        auto& shown = item(bar);
        const double x = actions.timeline()->axis().xOf(seconds / 4);
        return shown.mapToScene({x, shown.height() / 2}).toPoint();
    }
    void drag(const char* bar, double from, double to, Qt::KeyboardModifiers held = {}) {
        QTest::mousePress(&window(), Qt::LeftButton, held, at(bar, from));
        QTest::mouseMove(&window(), at(bar, (from + to) / 2));
        QTest::mouseMove(&window(), at(bar, to));
        QTest::mouseRelease(&window(), Qt::LeftButton, held, at(bar, to));
        settle();
    }
    void tap(const char* bar, double seconds) {
        QTest::mouseClick(&window(), Qt::LeftButton, {}, at(bar, seconds));
        settle();
    }
    bool playheadBecomes(double seconds) {
        return QTest::qWaitFor(
            [&] { return std::abs(preview.transport()->currentTime() - seconds) < 0.02; });
    }
    const ClickEvent& zoom(std::size_t index) { return state.editableClickEvents()[index]; }
    std::vector<std::pair<double, double>> pieces() {
        std::vector<std::pair<double, double>> result;
        for (const auto& segment : state.segments())
            result.emplace_back(std::round(segment.startFraction * 100) / 100,
                                std::round(segment.endFraction * 100) / 100);
        return result;
    }
    std::string undoName() { return state.document().undoName(); }

    static constexpr double pixel = 0.006; ///< seconds, a little more than one at this width
};

using Pieces = std::vector<std::pair<double, double>>;

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
    open({zoomAt(1)});
    auto project = *state.document().project();
    auto metadata = project.recording.metadata();
    metadata.cursorPositions = {{.x = 10, .y = 20, .timestamp = 2},
                                {.x = 30, .y = 60, .timestamp = 4}};
    project.recording = {project.recording.movie(), metadata};
    state.show(project);
    settle();
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

TEST_F(TimelineBarsTest, EdgesTrimMoveCutsAndShowThePictureThereUntilLetGo) {
    open({}, {{.startFraction = 0, .endFraction = 0.5}, {.startFraction = 0.5}});
    preview.transport()->seek(0.25);
    ASSERT_TRUE(playheadBecomes(1));
    drag("segmentsBar", 2, 2.4);
    EXPECT_EQ(pieces(), (Pieces{{0, 0.6}, {0.6, 1}}));
    EXPECT_EQ(undoName(), "Move Cut");
    QTest::mousePress(&window(), Qt::LeftButton, {}, at("segmentsBar", 4));
    QTest::mouseMove(&window(), at("segmentsBar", 3.6));
    EXPECT_TRUE(preview.transport()->isScrubbing());
    EXPECT_NEAR(preview.transport()->currentTime(), 3.6, pixel);
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, at("segmentsBar", 3.6));
    EXPECT_FALSE(preview.transport()->isScrubbing());
    EXPECT_EQ(pieces(), (Pieces{{0, 0.6}, {0.6, 0.9}}));
    EXPECT_TRUE(playheadBecomes(1));
    drag("segmentsBar", 3.6, 4.05); // drawn back
    EXPECT_EQ(pieces(), (Pieces{{0, 0.6}, {0.6, 1}}));
}

TEST_F(TimelineBarsTest, AClickSeeksAndSelectsThePieceAndDeleteCutsItOut) {
    open({}, {{.startFraction = 0, .endFraction = 0.25},
              {.startFraction = 0.25, .endFraction = 0.5},
              {.startFraction = 0.75}});
    tap("segmentsBar", 1.5);
    EXPECT_TRUE(playheadBecomes(1.5));
    EXPECT_EQ(state.selectedSegmentID(), state.segments()[1].id);
    key(Qt::Key_Delete);
    EXPECT_EQ(pieces(), (Pieces{{0, 0.25}, {0.75, 1}}));
    EXPECT_FALSE(state.selectedSegmentID());
    tap("segmentsBar", 2.5); // what was cut
    EXPECT_TRUE(playheadBecomes(2.5));
    EXPECT_FALSE(state.selectedSegmentID());
    EXPECT_FALSE(preview.transport()->isPlaying());
}

TEST_F(TimelineBarsTest, ARangeIsMarkedByShiftOrByKeysAndCutOutByDelete) {
    open({zoomAt(3)});
    tap("zoomBar", 3);
    drag("ruler", 1, 2, Qt::ShiftModifier);
    EXPECT_TRUE(shows("mark"));
    key(Qt::Key_Backspace);
    EXPECT_EQ(pieces(), (Pieces{{0, 0.25}, {0.5, 1}})) << "not the zoom that was selected before";
    EXPECT_FALSE(shows("mark"));
    tap("ruler", 3);
    ASSERT_TRUE(playheadBecomes(3));
    key(Qt::Key_I);
    tap("ruler", 3.2);
    ASSERT_TRUE(playheadBecomes(3.2));
    key(Qt::Key_O);
    key(Qt::Key_Delete);
    EXPECT_EQ(pieces(), (Pieces{{0, 0.25}, {0.5, 0.75}, {0.8, 1}}));
    EXPECT_EQ(undoName(), "Cut Range");
    drag("ruler", 0, 4, Qt::ShiftModifier);
    key(Qt::Key_Delete);
    EXPECT_EQ(text("timelineHint"), "Nothing would be left of the film.");
    key(Qt::Key_Escape);
    EXPECT_FALSE(shows("mark"));
}

TEST_F(TimelineBarsTest, DraggingOnTheRulerScrubsAndLettingGoShowsTheExactPicture) {
    open();
    QTest::mousePress(&window(), Qt::LeftButton, {}, at("ruler", 0));
    QTest::mouseMove(&window(), at("ruler", 2.6));
    EXPECT_TRUE(preview.transport()->isScrubbing());
    EXPECT_NEAR(preview.transport()->currentTime(), 2.6, pixel);
    EXPECT_TRUE(stageBecomes(test::colorOfSecond(2)));
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, at("ruler", 2.6));
    EXPECT_FALSE(preview.transport()->isScrubbing());
    EXPECT_TRUE(playheadBecomes(2.6));
}

TEST_F(TimelineBarsTest, TheWheelMagnifiesAtThePointerAndFitShowsAllAgain) {
    open({zoomAt(1)});
    const auto place = at("ruler", 1);
    const auto turn = [&](int delta, Qt::KeyboardModifiers held = {}) {
        QWheelEvent event(place, window().mapToGlobal(place), {}, {0, delta}, {}, held,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&window(), &event);
        settle();
    };
    for (int i = 0; i < 6; ++i)
        turn(120);
    EXPECT_LT(actions.timeline()->viewSpan(), 0.3);
    EXPECT_NEAR((at("ruler", 1) - place).x(), 0, 1);
    const double start = actions.timeline()->viewStart();
    turn(-120, Qt::ShiftModifier);
    EXPECT_GT(actions.timeline()->viewStart(), start);
    tap("zoomBar", 1);
    EXPECT_EQ(state.selectedClickID(), zoom(0).id);
    click("fit");
    EXPECT_EQ(actions.timeline()->viewSpan(), 1);
}

TEST_F(TimelineBarsTest, ADragHeldBeyondAnEndScrollsAMagnifiedViewUntilItComesBack) {
    open({zoomAt(1, 0.2, 0.2)}, {{.endFraction = 0.25}, {.startFraction = 0.25}});
    struct Case {
        const char* bar;
        double from;
        double beyond; ///< points outside of the end
        std::function<double()> place;
    };
    for (const auto& c : std::vector<Case>{
             {"zoomBar", 1, 10, [this] { return zoom(0).timestamp; }},
             {"segmentsBar", 1, 6, [this] { return 4 * state.segments()[0].endFraction; }},
             {"ruler", 1, 10, [this] { return preview.transport()->currentTime(); }},
         }) {
        SCOPED_TRACE(c.bar);
        auto& timeline = *actions.timeline();
        timeline.fit();
        timeline.magnify(8, 0);
        timeline.scrollTo(0.2);
        settle();
        const auto start = timeline.viewStart();
        QTest::mousePress(&window(), Qt::LeftButton, {}, at(c.bar, c.from));
        const double end = 4 * (start + timeline.viewSpan());
        const auto outside = at(c.bar, end) + QPointF(c.beyond, 0).toPoint();
        QTest::mouseMove(&window(), outside);
        EXPECT_TRUE(QTest::qWaitFor([&] { return timeline.viewStart() > start + 0.05; }));
        const auto held = [&] { return timeline.axis().xOf(c.place() / 4) - timeline.width(); };
        EXPECT_NEAR(held(), c.beyond, 1) << "it stays at the pointer";
        QTest::mouseMove(&window(), outside - QPointF(c.beyond + 20, 0).toPoint());
        const double still = timeline.viewStart();
        EXPECT_FALSE(QTest::qWaitFor([&] { return timeline.viewStart() != still; }, 60));
        QTest::mouseRelease(&window(), Qt::LeftButton, {},
                            outside - QPointF(c.beyond + 20, 0).toPoint());
        settle();
    }
    key(Qt::Key_Z, Qt::ControlModifier);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(state.document().canUndo()) << "each drag is one step";
}

TEST_F(TimelineBarsTest, RecomputingAsksBeforeItDropsZoomsMadeByHand) {
    open();
    auto project = *state.document().project();
    auto metadata = project.recording.metadata();
    metadata.endTime = 4;
    metadata.clickEvents = {zoomAt(2)};
    project.recording = {project.recording.movie(), metadata};
    project.edit = model::freshEdit(metadata, project.edit);
    const auto fresh = project.edit.clickEvents;
    state.show(project);
    settle();
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
    for (const auto typed :
         {Qt::Key_S, Qt::Key_Home, Qt::Key_Left, Qt::Key_Delete, Qt::Key_BracketLeft})
        key(typed);
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

TEST_F(TimelineBarsTest, AssistiveTechnologyFindsReadsAndMovesEverything) {
    open({zoomAt(2.5)}, {{.endFraction = 0.5, .speed = 2}, {.startFraction = 0.5}});
    state.setSelectedClickID(zoom(0).id);
    settle();
    auto* root = QAccessible::queryAccessibleInterface(&item("timeline"));
    for (const auto& [name, value] :
         std::vector<std::pair<const char*, double>>{{"Zoom 1.5x at 0:02.5", 2.5},
                                                     {"Start of Zoom 1.5x at 0:02.5", 2},
                                                     {"End of Zoom 1.5x at 0:02.5", 3},
                                                     {"Start of segment 1", 0},
                                                     {"Cut between segments 1 and 2", 2},
                                                     {"End of segment 2", 4},
                                                     {"Playhead", 0}}) {
        const auto all = found(root, QString::fromLatin1(name));
        ASSERT_EQ(all.size(), 1U) << name;
        EXPECT_EQ(all[0]->role(), QAccessible::Slider) << name;
        ASSERT_NE(all[0]->valueInterface(), nullptr) << name;
        EXPECT_NEAR(all[0]->valueInterface()->currentValue().toDouble(), value, 1e-9) << name;
    }
    EXPECT_EQ(found(root, "Segment 1, 2x").at(0)->role(), QAccessible::ListItem);

    found(root, "Zoom 1.5x at 0:02.5").at(0)->valueInterface()->setCurrentValue(1.0);
    EXPECT_NEAR(zoom(0).timestamp, 1, 1e-9);
    found(root, "Cut between segments 1 and 2").at(0)->valueInterface()->setCurrentValue(99.0);
    EXPECT_EQ(pieces()[0].second, 1) << "as far as it goes";
    EXPECT_NEAR(found(root, "Cut between segments 1 and 2")
                    .at(0)
                    ->valueInterface()
                    ->currentValue()
                    .toDouble(),
                3.98, 1e-6);
    found(root, "Playhead").at(0)->valueInterface()->setCurrentValue(3.0);
    EXPECT_TRUE(playheadBecomes(3));
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
