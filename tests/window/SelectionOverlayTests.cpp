#include "window/overlay/SelectionOverlay.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTest>

#include <gtest/gtest.h>

namespace vantro::window {
namespace {

model::Rect drag(model::Point from, model::Point to) {
    window::overlay::SelectionGeometry geometry;
    geometry.press(from);
    geometry.drag({200, 200});
    geometry.drag(to);
    return geometry.release().value_or(model::Rect{});
}

TEST(SelectionGeometry, RoundsTheSizeDownToEvenNumbers) {
    EXPECT_EQ(drag({20, 30}, {321, 231}), (model::Rect{20, 30, 300, 200}));
    EXPECT_EQ(drag({20, 30}, {320.75, 229.25}), (model::Rect{20, 30, 300, 198}));
}

TEST(SelectionGeometry, TheDirectionOfTheDragDoesNotMatter) {
    const model::Rect expected{100, 50, 300, 200};
    EXPECT_EQ(drag({100, 50}, {400, 250}), expected);
    EXPECT_EQ(drag({400, 250}, {100, 50}), expected);
    EXPECT_EQ(drag({400, 50}, {100, 250}), expected);
}

TEST(SelectionGeometry, ASmallDragIsASlipAndStartsOver) {
    for (const auto& to : {model::Point{30, 300}, model::Point{300, 30}, model::Point{20, 20}}) {
        window::overlay::SelectionGeometry geometry;
        geometry.press({20, 20});
        geometry.drag(to);
        EXPECT_FALSE(geometry.release());
        EXPECT_EQ(geometry.currentRect(), model::Rect{});
        geometry.drag({500, 500});
        EXPECT_FALSE(geometry.hasArea()) << "no button is down";
    }
    EXPECT_NE(drag({20, 20}, {31, 31}), model::Rect{});
}

TEST(SelectionGeometry, LabelCutsOffFractions) {
    window::overlay::SelectionGeometry geometry;
    geometry.press({0, 0});
    geometry.drag({640.9, 360.5});
    EXPECT_EQ(geometry.label(), "640 x 360");
}

/// An overlay over a screen that is white all over.
class SelectionOverlayTest : public testing::Test {
  protected:
    explicit SelectionOverlayTest() { show(1); }

    void show(double pixelsPerUnit) {
        auto* screen = QGuiApplication::primaryScreen();
        QImage backdrop(screen->size(), QImage::Format_RGB32);
        backdrop.fill(Qt::white);
        overlay = std::make_unique<window::overlay::SelectionOverlay>(
            screen, backdrop,
            window::overlay::OverlayScale{.pixelsPerUnit = pixelsPerUnit, .displayID = 9},
            app::flows::AreaOverlayCallbacks{.onSelection =
                                                 [this](auto displayID, auto rect) {
                                                     ++answers;
                                                     selectedDisplay = displayID;
                                                     selected = rect;
                                                 },
                                             .onCancel =
                                                 [this] {
                                                     ++answers;
                                                     cancelled = true;
                                                 }});
        overlay->showFullScreen();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(overlay.get()));
    }
    void dragTo(QPoint from, QPoint to) {
        QTest::mousePress(overlay.get(), Qt::LeftButton, {}, from);
        QTest::mouseMove(overlay.get(), to);
    }
    QImage picture() {
        QImage image(overlay->size(), QImage::Format_ARGB32);
        QPainter painter(&image);
        overlay->paint(painter);
        return image;
    }

    std::unique_ptr<window::overlay::SelectionOverlay> overlay;
    int answers = 0;
    bool cancelled = false;
    std::uint32_t selectedDisplay = 0;
    std::optional<model::Rect> selected;
};

TEST_F(SelectionOverlayTest, DimsTheScreenExceptWhatIsSelected) {
    EXPECT_EQ(overlay->cursor().shape(), Qt::CrossCursor);
    const int dimmed = 255 * 7 / 10;
    EXPECT_NEAR(picture().pixelColor(300, 300).red(), dimmed, 1);
    dragTo({200, 200}, {500, 400});
    const auto image = picture();
    EXPECT_EQ(image.pixelColor(350, 300), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(203, 203), QColor(Qt::white));
    EXPECT_NEAR(image.pixelColor(100, 300).red(), dimmed, 1);
    const auto border = image.pixelColor(198, 300);
    EXPECT_LT(border.red(), 140);
    EXPECT_GT(border.green(), border.red() + 50) << "the accent colour, just outside";
    const auto label = image.pixelColor(350, 200 - 8 - 1);
    EXPECT_LT(label.red(), 80) << "the label's plate ends eight points above";
    EXPECT_NEAR(image.pixelColor(350, 200 - 5).red(), dimmed, 1);
}

TEST_F(SelectionOverlayTest, ReportsTheAreaOnceAndHides) {
    dragTo({200, 200}, {501, 401});
    QTest::mouseRelease(overlay.get(), Qt::LeftButton, {}, {501, 401});
    EXPECT_EQ(answers, 1);
    EXPECT_FALSE(overlay->isVisible());
    EXPECT_EQ(selected, (model::Rect{200, 200, 300, 200}));
    EXPECT_EQ(selectedDisplay, 9U);
}

TEST_F(SelectionOverlayTest, EscapeCancelsEvenDuringADrag) {
    dragTo({200, 200}, {500, 400});
    QTest::keyClick(overlay.get(), Qt::Key_Escape);
    QTest::mouseRelease(overlay.get(), Qt::LeftButton, {}, {500, 400});
    EXPECT_TRUE(cancelled);
    EXPECT_EQ(answers, 1);
}

TEST_F(SelectionOverlayTest, AScreenThatChangesItsSizeCancels) {
    dragTo({200, 200}, {500, 400});
    Q_EMIT overlay->screen()->geometryChanged({0, 0, 400, 300}); // as the display's unplugging does
    EXPECT_TRUE(cancelled);
    EXPECT_FALSE(overlay->isVisible());
}

TEST_F(SelectionOverlayTest, ASlipLeavesItOpenForTheNextDrag) {
    dragTo({200, 200}, {210, 400});
    QTest::mouseRelease(overlay.get(), Qt::LeftButton, {}, {210, 400});
    EXPECT_TRUE(overlay->isVisible());
    dragTo({10, 10}, {110, 110});
    QTest::mouseRelease(overlay.get(), Qt::LeftButton, {}, {110, 110});
    EXPECT_EQ(selected, (model::Rect{10, 10, 100, 100}));
}

TEST_F(SelectionOverlayTest, OtherKeysAndButtonsDoNothing) {
    QTest::keyClick(overlay.get(), Qt::Key_Return);
    QTest::mouseClick(overlay.get(), Qt::RightButton, {}, {100, 100});
    EXPECT_TRUE(overlay->isVisible());
}

TEST_F(SelectionOverlayTest, UnderFractionalScalingTheAreaAndTheLabelAreInPoints) {
    show(1.5); // a device pixel ratio of 1.5 has points of one pixel
    dragTo({200, 200}, {400, 300});
    EXPECT_EQ(picture().pixelColor(390, 290), QColor(Qt::white)) << "drawn where it is dragged";
    QTest::mouseRelease(overlay.get(), Qt::LeftButton, {}, {400, 300});
    EXPECT_EQ(selected, (model::Rect{300, 300, 300, 150}));
}

} // namespace
} // namespace vantro::window
