#include "window/overlay/SelectionOverlay.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include <gtest/gtest.h>

namespace vantro::window::overlay {
namespace {

model::Rect drag(model::Point from, model::Point to) {
    SelectionGeometry geometry;
    geometry.press(from);
    geometry.drag({200, 200});
    geometry.drag(to);
    return geometry.release().value_or(model::Rect{});
}

TEST(SelectionGeometry, IsEvenWhateverTheDirectionAndNoSlip) {
    EXPECT_EQ(drag({20, 30}, {321, 231}), (model::Rect{20, 30, 300, 200}));
    EXPECT_EQ(drag({320.75, 229.25}, {20, 30}), (model::Rect{20, 30, 300, 198}));
    EXPECT_EQ(drag({400, 50}, {100, 250}), (model::Rect{100, 50, 300, 200}));
    EXPECT_EQ(drag({20, 20}, {30, 300}), model::Rect{}) << "ten points are a slip";
    EXPECT_EQ(drag({20, 20}, {300, 30}), model::Rect{});
    EXPECT_NE(drag({20, 20}, {31, 31}), model::Rect{});
    SelectionGeometry geometry;
    geometry.press({0, 0});
    geometry.drag({640.9, 360.5});
    EXPECT_EQ(geometry.label(), "640 x 360") << "fractions are cut off";
}

/// An overlay over a screen that is white all over.
class SelectionOverlayTest : public testing::Test {
  protected:
    SelectionOverlayTest() { show({.displayID = 9}); }

    void show(const OverlayScale& scale) {
        auto* screen = QGuiApplication::primaryScreen();
        QImage backdrop(screen->size(), QImage::Format_RGB32);
        backdrop.fill(Qt::white);
        overlay = std::make_unique<SelectionOverlay>(
            screen, backdrop, scale,
            app::flows::AreaOverlayCallbacks{.onSelection =
                                                 [this](auto displayID, auto rect) {
                                                     ++answers;
                                                     selectedDisplay = displayID;
                                                     selected = rect;
                                                 },
                                             .onCancel = [this] { ++answers; }});
        overlay->showFullScreen();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(overlay.get()));
    }
    void dragTo(QPoint from, QPoint to) {
        QTest::mousePress(overlay.get(), Qt::LeftButton, {}, from);
        QTest::mouseMove(overlay.get(), to);
    }
    void release(QPoint at) { QTest::mouseRelease(overlay.get(), Qt::LeftButton, {}, at); }

    std::unique_ptr<SelectionOverlay> overlay;
    int answers = 0;
    std::uint32_t selectedDisplay = 0;
    std::optional<model::Rect> selected;
};

TEST_F(SelectionOverlayTest, TellsTheAreaOfItsDisplayOnceAndHides) {
    show({.displayID = 9, .origin = {-100, 1000}});
    dragTo({200, 200}, {210, 400});
    release({210, 400});
    QTest::keyClick(overlay.get(), Qt::Key_Return);
    QTest::mouseClick(overlay.get(), Qt::RightButton, {}, {100, 100});
    EXPECT_TRUE(overlay->isVisible()) << "a slip, another key or button";
    dragTo({200, 200}, {501, 401});
    release({501, 401});
    EXPECT_FALSE(overlay->isVisible());
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(selected, (model::Rect{100, 1200, 300, 200}));
    EXPECT_EQ(selectedDisplay, 9U);
}

TEST_F(SelectionOverlayTest, EscapeAndAScreenThatChangesCancelEvenDuringADrag) {
    dragTo({200, 200}, {500, 400});
    QTest::keyClick(overlay.get(), Qt::Key_Escape);
    release({500, 400});
    EXPECT_EQ(answers, 1);
    EXPECT_FALSE(selected);
    show({});
    dragTo({200, 200}, {500, 400});
    Q_EMIT overlay->screen()->geometryChanged({0, 0, 400, 300}); // as the display's unplugging does
    EXPECT_EQ(answers, 2);
    EXPECT_FALSE(overlay->isVisible());
    EXPECT_FALSE(selected);
}

} // namespace
} // namespace vantro::window::overlay
