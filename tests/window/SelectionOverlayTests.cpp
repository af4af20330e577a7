#include "window/overlay/FrozenPicture.h"
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

TEST(SelectionGeometry, IsMovedGrownAndTypedInsideOfTheScreen) {
    using Rect = model::Rect;
    SelectionGeometry geometry;
    geometry.setBounds({800, 600});
    geometry.moveBy(1, 1);
    EXPECT_FALSE(geometry.finished()) << "there is nothing to move";
    geometry.type("200x100");
    EXPECT_EQ(geometry.currentRect(), (Rect{300, 250, 200, 100})) << "in the middle";
    geometry.type("210, 110, 30 40");
    EXPECT_EQ(geometry.currentRect(), (Rect{30, 40, 210, 110}));
    geometry.type("220");
    EXPECT_EQ(geometry.currentRect(), (Rect{30, 40, 220, 110}));
    geometry.type("99999999999 0");
    EXPECT_EQ(geometry.currentRect(), (Rect{30, 40, 220, 110})) << "no area";
    geometry.moveBy(-40, 1000);
    EXPECT_EQ(geometry.currentRect(), (Rect{0, 490, 220, 110}));
    geometry.growBy(1000, -1000);
    EXPECT_EQ(geometry.currentRect(), (Rect{0, 490, 800, 11}));
    EXPECT_EQ(geometry.finished(), (Rect{0, 490, 800, 10}));
    geometry.select({-50, -50, 150, 150}); // of a display that was larger
    EXPECT_EQ(geometry.currentRect(), (Rect{0, 0, 100, 100}));
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

TEST_F(SelectionOverlayTest, KeysSetTheAreaThatIsOfferedAndEnterTakesIt) {
    const auto press = [this](int key, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::keyClick(overlay.get(), static_cast<Qt::Key>(key), with);
    };
    overlay->offer({100, 100, 200, 100});
    press(Qt::Key_Left);
    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_Up, Qt::ControlModifier);
    press(Qt::Key_Enter);
    EXPECT_EQ(selected, (model::Rect{99, 110, 210, 98}));
    show({});
    for (const char digit : std::string("300 120 5x6"))
        press(std::toupper(static_cast<unsigned char>(digit)));
    press(Qt::Key_Backspace);
    press(Qt::Key_7);
    press(Qt::Key_Return);
    EXPECT_EQ(selected, (model::Rect{5, 7, 300, 120}));
    show({});
    dragTo({200, 200}, {300, 300});
    press(Qt::Key_Right);
    release({300, 300});
    EXPECT_EQ(answers, 2) << "what keys have adjusted waits for Enter";
    press(Qt::Key_Return);
    EXPECT_EQ(selected, (model::Rect{201, 200, 100, 100}));
}

TEST(ChosenContent, IsAWholeScreenUnlessItHasNoPlaceOrIsSmallerThanEveryScreen) {
    const QSizeF screen = QGuiApplication::primaryScreen()->size();
    const auto isWhole = [](const QSizeF& pixels, const std::optional<QSizeF>& place) {
        capture::ChosenContent content{
            .picture = media::PixelBuffer::allocate(media::PixelFormat::bgra,
                                                    static_cast<int>(pixels.width()),
                                                    static_cast<int>(pixels.height()))};
        if (place)
            content.place = {.width = place->width(), .height = place->height()};
        return isWholeScreen(content);
    };
    EXPECT_TRUE(isWhole(screen, screen));
    EXPECT_TRUE(isWhole(screen * 1.5, screen)) << "with a scale";
    EXPECT_TRUE(isWhole(screen * 1.5, screen - QSizeF(1, 0))) << "rounded";
    EXPECT_TRUE(isWhole(screen * 1.5, screen * 1.5)) << "told in pixels";
    EXPECT_FALSE(isWhole(screen, {}));
    EXPECT_FALSE(isWhole(screen / 2, screen / 2)) << "of the same form";
}

TEST(PixelsPerUnit, AreTheDesktopsScaleThoughTheWindowIsRoundedToUnits) {
    EXPECT_EQ(pixelsPerUnit(1280, 853), 1.5);
    EXPECT_EQ(pixelsPerUnit(1280, 854), 1.5);
    EXPECT_EQ(pixelsPerUnit(1920, 1536), 1.25);
    EXPECT_EQ(pixelsPerUnit(1920, 1096), 1920 / 1096.0)
        << "GNOME makes scales that need no rounding";
}

/// Where it is not known which screen a picture shows, the window has another form.
TEST_F(SelectionOverlayTest, FindsThePixelsOfAPictureThatIsFittedIntoIt) {
    show({.pixelsPerUnit = 0, .pixelsPerPoint = 2});
    overlay->hide();
    overlay->showFitted();
    overlay->resize(1200, 400);
    ASSERT_TRUE(QTest::qWaitFor([this] { return overlay->height() == 400; }));
    const QSize screen = overlay->screen()->size(); // the picture's pixels
    const double scale = 400.0 / screen.height();
    const double left = (1200 - screen.width() * scale) / 2;
    const auto place = [&](double x, double y) {
        return QPointF(left + x * screen.width() * scale, y * 400).toPoint();
    };
    dragTo(place(0.25, 0.25), place(0.5, 0.5));
    release(place(0.5, 0.5));
    ASSERT_TRUE(selected);
    EXPECT_NEAR(selected->x, screen.width() / 8.0, 2);
    EXPECT_NEAR(selected->y, screen.height() / 8.0, 2);
    EXPECT_NEAR(selected->width, screen.width() / 8.0, 3);
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
