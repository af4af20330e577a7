#include "window/WindowFixture.h"

#include <QAccessible>
#include <cmath>

namespace vantro::editor {
namespace {

using test::Rgb;

constexpr Rgb red{200, 30, 30};
constexpr model::Point mark{240, 45}; ///< of a white spot in the recording's picture, points

/// A recording with a white spot in it, on a canvas with padding, with one zoom.
class ZoomTargetTest : public test::WindowFixture {
  protected:
    ZoomTargetTest() {
        showWindow();
        const std::filesystem::path movie =
            files.filePath(QStringLiteral("shown.mov")).toStdString();
        test::writeMovie(movie, 640, 360, 10, 40, [](auto& picture, int) {
            test::fill(picture, red);
            for (int y = 80; y < 100; ++y)
                std::fill_n(picture.mutableRow(0, y) + 470 * 4, 20 * 4, 255);
        });
        model::RecordingMetadata metadata;
        metadata.captureRect = {0, 0, 320, 180};
        metadata.displayScaleFactor = 2;
        metadata.endTime = 4;
        model::Edit edit;
        edit.clickEvents = {{{.x = mark.x,
                              .y = mark.y,
                              .timestamp = 2,
                              .startOffset = 1,
                              .endOffset = 1,
                              .zoomLevel = 2}}};
        edit.canvasAspectRatio = model::CanvasAspectRatio::ratio4x3;
        edit.background.padding = 0.15;
        showEditor(edit, metadata);
        auto project = *state.document().project();
        project.edit.background.padding = 0.15;
        state.show(std::move(project));
        state.setSelectedClickID(zoom().id);
        EXPECT_TRUE(QTest::qWaitFor([this] { return preview.isReady() && shows("zoomTarget"); }));
    }
    const model::ClickEvent& zoom() { return state.editableClickEvents().front(); }
    QPoint middle() {
        auto& target = item("zoomTarget");
        return target.mapToScene({target.width() / 2, target.height() / 2}).toPoint();
    }
    /// Where the white spot is in the picture, the target left out.
    QPoint spot() {
        auto& target = item("zoomTarget");
        target.setOpacity(0);
        const auto shot = window().grabWindow();
        target.setOpacity(1);
        const auto area = item("stage").mapRectToScene(item("stage").boundingRect()).toRect();
        QPointF sum;
        int count = 0;
        for (int y = area.top(); y < area.bottom(); ++y)
            for (int x = area.left(); x < area.right(); ++x)
                if (shot.pixelColor(x, y).blue() > 150) {
                    sum += QPointF(x, y);
                    ++count;
                }
        return count > 0 ? (sum / count).toPoint() : QPoint();
    }
    bool standsOnSpot() {
        return QTest::qWaitFor([this] {
            const auto distance = middle() - spot();
            return std::abs(distance.x()) <= 2 && std::abs(distance.y()) <= 2;
        });
    }
};

TEST_F(ZoomTargetTest, StandsOnTheZoomsCenterInTheFramedAndInTheMagnifiedPicture) {
    EXPECT_TRUE(standsOnSpot());
    const auto framed = spot();
    preview.transport()->seek(0.5);
    ASSERT_TRUE(QTest::qWaitFor([&] { return spot() != framed; })) << "it is magnified now";
    EXPECT_TRUE(standsOnSpot());
    state.setCanvasAspectRatio(model::CanvasAspectRatio::ratio9x16);
    settle();
    EXPECT_TRUE(standsOnSpot());
    state.setSelectedClickID({});
    settle();
    EXPECT_FALSE(shows("zoomTarget"));
}

TEST_F(ZoomTargetTest, ADragMovesTheCenterAndThePausedPictureInOneStep) {
    preview.transport()->seek(0.5);
    settle();
    ASSERT_TRUE(standsOnSpot());
    const auto before = spot();
    const auto start = middle();
    QTest::mousePress(&window(), Qt::LeftButton, {},
                      start + QPoint(5, 3)); // not quite in its middle
    QTest::mouseMove(&window(), start + QPoint(-15, 13));
    QTest::mouseMove(&window(), start + QPoint(-35, 23));
    settle();
    EXPECT_EQ(middle(), start + QPoint(-40, 20)) << "under the pointer";
    EXPECT_LT(zoom().x, mark.x);
    EXPECT_GT(zoom().y, mark.y);
    EXPECT_TRUE(QTest::qWaitFor([&] { return spot() != before; })) << "the picture follows";
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, start + QPoint(-35, 23));
    EXPECT_EQ(state.document().undoName(), "Move Zoom Center");
    state.document().undo();
    EXPECT_EQ(zoom().x, mark.x);
    EXPECT_FALSE(state.document().canUndo());
}

TEST_F(ZoomTargetTest, ArrowKeysMoveItAndItEndsAtTheRecordingsEdges) {
    auto& target = item("zoomTarget");
    target.forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Left);
    EXPECT_EQ(zoom().x, mark.x - 10);
    key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(zoom().y, mark.y + 1);
    const auto* told = QAccessible::queryAccessibleInterface(&target);
    EXPECT_EQ(told->text(QAccessible::Name), "Zoom center");
    EXPECT_EQ(told->text(QAccessible::Description), "230, 46");
    for (int i = 0; i < 20; ++i)
        key(Qt::Key_Right);
    EXPECT_EQ(zoom().x, 320);
    preview.transport()->togglePlayPause();
    settle();
    EXPECT_FALSE(shows("zoomTarget")) << "in the way";
}

} // namespace
} // namespace vantro::editor
