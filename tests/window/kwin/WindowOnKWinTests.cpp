// A window is recorded by a real KWin, through the genuine portal and KDE's part of it. Nobody
// answers a dialog: the choice is one that the portal remembers.
#include "capture/Colors.h"
#include "capture/MovieFrames.h"
#include "capture/session/RecordingSession.h"
#include "capture/wayland/WaylandCapturePlatform.h"
#include "support/TemporaryFolder.h"
#include "window/kwin/KWinDesk.h"

#include <QGuiApplication>
#include <QPainter>
#include <QRasterWindow>
#include <QTest>

#include <gmock/gmock.h>

namespace vantro::capture::wayland {
namespace {

using namespace test;
using namespace colors;

class PaintedWindow : public QRasterWindow {
  public:
    void show(QSize size, std::uint32_t color) {
        m_color = QColor(color);
        resize(size);
        QRasterWindow::show();
        update();
    }

  private:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(QRect(QPoint(), size()), m_color);
    }

    QColor m_color;
};

bool has(const media::VideoFrame& frame, int x, int y, std::uint32_t color) {
    return hasColor(*frame.pixels, x, y, color, 8);
}

TEST(WindowOnKWin, IsRecordedWhilePaintedAnewAndMadeSmaller) {
    if (!KWinDesk::isInstalled())
        GTEST_SKIP()
            << "kwin-wayland, xdg-desktop-portal-kde, qtwayland5 or qt6-wayland is not installed";
    const TemporaryFolder folder;
    const auto movie = folder / "recording.mov";
    PaintedWindow window;
    window.setTitle(QStringLiteral("painted"));
    window.setFlag(Qt::FramelessWindowHint);
    window.show({640, 360}, red);
    std::string token;
    ASSERT_TRUE(QTest::qWaitFor([&] { return !(token = KWinDesk::grant("painted")).empty(); }));
    RestoreTokens tokens(folder / "tokens.json", "");
    tokens.keep(model::CaptureMode::window, {token, {}});

    RecordingSession session({.mode = model::CaptureMode::window},
                             [&] { return connectPortal(tokens).value(); });
    ASSERT_TRUE(session.choose({}));
    ASSERT_TRUE(session.start(movie));
    const auto awaitFrames = [&](std::int64_t count) {
        return QTest::qWaitFor([&] { return session.statistics().framesCaptured >= count; });
    };
    ASSERT_TRUE(awaitFrames(1));
    window.show({640, 360}, green);
    ASSERT_TRUE(awaitFrames(2));
    window.show({200, 360}, blue);
    ASSERT_TRUE(awaitFrames(3));
    session.stop();

    const auto made = framesOf(movie);
    EXPECT_EQ(made.front().pixels->width(), 640);
    EXPECT_EQ(made.front().pixels->height(), 360);
    for (const auto& [x, y] : {std::pair{0, 0}, {639, 359}}) {
        EXPECT_TRUE(has(made.front(), x, y, red)) << x << ", " << y;
        EXPECT_TRUE(has(made[1], x, y, green)) << x << ", " << y;
        EXPECT_TRUE(has(made.back(), x, y, black)) << x << ", " << y;
    }
    EXPECT_TRUE(has(made.back(), 320, 180, blue));
}

} // namespace
} // namespace vantro::capture::wayland

/// The compositor must be there before the application object.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (!vantro::test::KWinDesk::isInstalled() || testing::GTEST_FLAG(list_tests)) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        const QGuiApplication application(argc, argv);
        return RUN_ALL_TESTS();
    }
    vantro::test::WaylandDesk session;
    const vantro::test::KWinDesk kwin(session);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
