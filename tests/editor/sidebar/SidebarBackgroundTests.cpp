#include "editor/sidebar/SidebarFixture.h"
#include "media/PictureFile.h"
#include "model/BackgroundCatalog.h"

namespace vantro::editor::sidebar {
namespace {

TEST_F(SidebarTest, AnyColorIsPickedByPointerKeysAndFigures) {
    open();
    clickRevealed("moreColors");
    const auto color = [this] {
        return std::get<model::BackgroundColor>(edit().background.type).hexString();
    };
    type("colorField", "336699");
    EXPECT_EQ(color(), "#336699");
    type("colorField", "#12345");
    EXPECT_EQ(color(), "#336699") << "no color";
    auto& square = reveal("colorSquare");
    const auto corner = square.mapToScene({square.width() - 1, 1}).toPoint();
    QTest::mousePress(&window(), Qt::LeftButton, {}, corner - QPoint(60, -40));
    QTest::mouseMove(&window(), corner - QPoint(30, -20));
    QTest::mouseMove(&window(), corner);
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, corner);
    const QColor bright(QString::fromStdString(color()));
    EXPECT_NEAR(bright.hsvHueF(), 7 / 12.0, 0.01) << "the hue stays";
    EXPECT_GT(bright.hsvSaturationF(), 0.97);
    EXPECT_GT(bright.valueF(), 0.97);
    state.document().undo();
    EXPECT_EQ(color(), "#336699");
    reveal("hueSlider");
    key(Qt::Key_Right);
    EXPECT_NEAR(QColor(QString::fromStdString(color())).hsvHue(), 210 + 3.6, 1);
}

class SidebarPictureTest : public SidebarTest {
  protected:
    SidebarPictureTest() {
        open();
        editor.sidebar()->background()->setPictureUsed(true);
        settle();
    }
    const model::BackgroundImageSource* picture() {
        return std::get_if<model::BackgroundImageSource>(&edit().background.type);
    }
    std::filesystem::path fileOf(QColor color, const char* name = "own #1 100%.png") {
        const auto path = files.filePath(QString::fromLatin1(name));
        QImage image(64, 64, QImage::Format_RGB32);
        image.fill(color);
        EXPECT_TRUE(image.save(path));
        return path.toStdString();
    }
};

TEST_F(SidebarPictureTest, TheProgramsPicturesAreShownSmallAndChosen) {
    const auto& catalog = model::BackgroundCatalog::application().builtInBackgrounds();
    ASSERT_EQ(catalog.size(), 26U);
    EXPECT_EQ(picture()->path, catalog[0].path);
    reveal("picture25");
    const auto small = media::readPicture(*catalog[25].thumbnail);
    const auto* middle = small->row(0, small->height() / 2) + small->width() / 2 * 4;
    EXPECT_TRUE(QTest::qWaitFor([&] {
        const auto shown = colorAt(item("picture25"));
        return std::abs(shown.red() - middle[2]) < 40 && std::abs(shown.blue() - middle[0]) < 40;
    }));
    click("picture25");
    EXPECT_EQ(picture()->path, catalog[25].path);
    key(Qt::Key_Up);
    EXPECT_EQ(picture()->path, catalog[21].path);
    editor.sidebar()->background()->setPictureUsed(false);
    editor.sidebar()->background()->setPictureUsed(true);
    EXPECT_EQ(picture()->path, catalog[21].path) << "where it was";
}

TEST_F(SidebarPictureTest, OnesOwnPictureIsChosenOrDroppedUnlessItIsNone) {
    const auto own = fileOf(Qt::magenta);
    clickRevealed("choosePicture");
    EXPECT_EQ(panels.kind, app::flows::PanelKind::openPicture);
    panels.answer(own);
    runTasks();
    ASSERT_NE(picture(), nullptr);
    EXPECT_EQ(picture()->path, own);
    reveal("ownPicture");
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return colorAt(item("ownPicture")) == QColor(Qt::magenta); }));

    const auto broken = files.filePath(QStringLiteral("broken.png"));
    QFile(broken).open(QIODevice::WriteOnly);
    const auto drop = [this](const QString& path) {
        return WindowFixture::drop(item("sidebar").mapToScene({50, 50}).toPoint(),
                                   {path.toStdString()});
    };
    EXPECT_TRUE(drop(broken));
    EXPECT_EQ(picture()->path, own) << "as it was";
    EXPECT_TRUE(text("pictureProblem").contains("broken.png"));
    EXPECT_FALSE(drop(files.filePath(QStringLiteral("notes.txt")))) << "no picture";
    const auto other = fileOf(Qt::green, "other.png");
    EXPECT_TRUE(drop(QString::fromStdString(other)));
    EXPECT_EQ(picture()->path, other);
    EXPECT_FALSE(shows("pictureProblem"));
}

} // namespace
} // namespace vantro::editor::sidebar
