#include "editor/bars/BarsFixture.h"

namespace vantro::editor::bars {
namespace {

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

} // namespace
} // namespace vantro::editor::bars
