// An area is selected by a real pointer, on an overlay under a real compositor, and recorded
// through the genuine portal. What the compositor shows and the stream's picture are apart: the
// picture is a scripted one of the size that a stream of that output has.
#include "app/flows/QtMainLoop.h"
#include "app/flows/RecordingFlow.h"
#include "capture/Colors.h"
#include "capture/MovieFrames.h"
#include "capture/session/RecordingSession.h"
#include "capture/wayland/WaylandCapturePlatform.h"
#include "support/Environment.h"
#include "support/ScriptedScreen.h"
#include "support/SwayDesk.h"
#include "ui/Preferences.h"
#include "window/overlay/DesktopOverlays.h"
#include "window/overlay/SelectionOverlay.h"
#include "window/platform/HiddenWindows.h"
#include "window/sway/VirtualPointer.h"

#include <QApplication>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QScreen>
#include <QTest>
#include <cstdlib>

#include <gmock/gmock.h>

namespace vantro::window {
namespace {

using namespace test;
using namespace test::colors;

constexpr const char* output = "HEADLESS-2";

SwayDesk* desk = nullptr;

/// How the output is set up, and what is dragged out of its picture.
struct Layout {
    const char* name;
    double scale;
    int turn; ///< degrees
    QRect area;
};

class AreaOnSway : public QObject,
                   public testing::TestWithParam<Layout>,
                   public app::flows::RecordingPlatform {
  protected:
    void SetUp() override {
        if (desk == nullptr)
            GTEST_SKIP() << "sway, its tools or Qt's part for Wayland are not installed";
        variables.set("TMPDIR", folder.path());
        const auto& [name, scale, turn, area] = GetParam();
        ASSERT_TRUE(SwayDesk::tell(QStringLiteral("output %1 scale %2 transform %3")
                                       .arg(output)
                                       .arg(scale)
                                       .arg(turn)
                                       .toStdString()));
        pixels = turn == 0 ? QSize(1280, 720) : QSize(720, 1280);
        const double width = pixels.width() / scale;
        ASSERT_TRUE(QTest::qWaitFor([&] {
            const auto* shown = screenOfOutput();
            return shown != nullptr && std::abs(shown->size().width() - width) < 1;
        }));
    }
    void TearDown() override {
        state.setOverlayWindow({});
        if (desk != nullptr)
            desk->session().endPortal();
    }

    bool eventFilter(QObject*, QEvent* event) override {
        isPointerInside |= event->type() == QEvent::Enter;
        return false;
    }
    std::vector<capture::ShareableDisplay> displays() override { return {}; }
    capture::PlatformAbilities abilities() override {
        return capture::wayland::connectPortal(tokens()).value()->abilities();
    }
    std::shared_ptr<capture::Recorder> makeRecorder(capture::RecordingRequest request) override {
        return std::make_shared<capture::RecordingSession>(std::move(request), [this] {
            return capture::wayland::connectPortal(tokens()).value();
        });
    }
    capture::wayland::RestoreTokens tokens() const { return {folder / "tokens.json", ""}; }

    static QScreen* screenOfOutput() {
        for (auto* each : QGuiApplication::screens())
            if (each->name() == QLatin1String(output))
                return each;
        return nullptr;
    }
    /// The output's picture: red, and white where the area is to be.
    void offer() {
        const auto& area = GetParam().area;
        const bool isTurned = GetParam().turn != 0;
        screen = std::make_unique<ScriptedScreen>(
            isTurned ? ScreenProfile{.width = pixels.height(), .height = pixels.width()}
                     : ScreenProfile{.width = pixels.width(), .height = pixels.height()});
        const Patch upright{area.x(), area.y(), area.width(), area.height(), white};
        const Patch turned{area.y(), pixels.width() - area.x() - area.width(), area.height(),
                           area.width(), white};
        screen->show({.patches = {{0, 0, 1280, 1280, red}, isTurned ? turned : upright},
                      .pointer = {{isTurned ? turned.x : upright.x, turned.y + turned.height}},
                      .transform = isTurned ? 1U : 0U});
        const auto place = screenOfOutput()->geometry();
        desk->session().startPortal({.node = screen->node(),
                                     .id = output,
                                     .position = {{place.x(), place.y()}},
                                     .size = {{place.width(), place.height()}}});
    }
    overlay::SelectionOverlay* shownOverlay() {
        for (auto* window : QGuiApplication::topLevelWindows())
            if (auto* found = qobject_cast<overlay::SelectionOverlay*>(window))
                if (found->isExposed() && state.overlayWindow() != nullptr)
                    return found;
        return nullptr;
    }
    std::string failure() const {
        const auto& error = state.error();
        return error ? error->what() : "no frame";
    }
    /// To a pixel of the output.
    void moveTo(QPoint pixel) {
        const auto* shown = screenOfOutput();
        pointer.moveTo(QPointF(shown->geometry().topLeft()) + QPointF(pixel) / GetParam().scale,
                       shown->virtualSize());
    }

    TemporaryFolder folder;
    Environment variables;
    bool isPointerInside = false;
    QSize pixels; ///< of the output, upright
    std::unique_ptr<ScriptedScreen> screen;
    ui::Preferences preferences{QString::fromStdString(folder / "vantro.ini")};
    app::AppState state{0};
    app::flows::QtMainTimers timers;
    app::flows::QtTaskRunner tasks{"recording"};
    overlay::DesktopOverlays overlays{*this, {}, preferences};
    app::flows::RecordingFlow flow{state, {*this, overlays, timers, tasks}};
    HiddenWindows hidden{flow};
    VirtualPointer pointer;
};

TEST_P(AreaOnSway, IsRecordedToThePixelAsItWasDraggedOut) {
    offer();
    QRasterWindow own;
    own.resize(200, 100);
    own.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&own));
    flow.preparation().begin();
    overlay::SelectionOverlay* overlay = nullptr;
    ASSERT_TRUE(QTest::qWaitFor([&] { return (overlay = shownOverlay()) != nullptr; }));
    EXPECT_FALSE(own.isVisible());
    const auto& area = GetParam().area;
    overlay->installEventFilter(this);
    ASSERT_TRUE(QTest::qWaitFor([&] { // until the compositor has shown it there
        moveTo(area.topLeft());
        return isPointerInside;
    }));
    EXPECT_EQ(overlay->size(), screenOfOutput()->size());
    pointer.press();
    moveTo(area.topLeft() + QPoint(area.width() / 2, area.height() / 2));
    const QPoint end(area.x() + area.width(), area.y() + area.height());
    moveTo(end);
    pointer.release();
    ASSERT_TRUE(QTest::qWaitFor([&] {
        return state.recorder() != nullptr && state.recorder()->statistics().framesCaptured > 0;
    })) << failure();
    EXPECT_FALSE(own.isVisible());
    flow.stopRecording();
    ASSERT_TRUE(QTest::qWaitFor([&] { return state.phase() == app::AppPhase::previewing(); }));
    EXPECT_TRUE(own.isVisible());

    const auto first = framesOf(state.recordingPath().value_or("")).at(0);
    EXPECT_EQ(first.pixels->width(), area.width());
    EXPECT_EQ(first.pixels->height(), area.height());
    for (const auto& [x, y] : {std::pair{0, 0},
                               {area.width() - 1, 0},
                               {0, area.height() - 1},
                               {area.width() - 1, area.height() - 1}})
        EXPECT_TRUE(hasColor(*first.pixels, x, y, white, 8)) << x << ", " << y;
    EXPECT_EQ(preferences.lastArea(QString::fromLatin1(output)).value_or(QRectF()),
              QRectF(QPointF(area.topLeft()) / std::floor(GetParam().scale),
                     QSizeF(area.size()) / std::floor(GetParam().scale)));
}

INSTANTIATE_TEST_SUITE_P(Layouts, AreaOnSway,
                         testing::Values(Layout{"unscaled", 1, 0, {101, 57, 400, 300}},
                                         Layout{"quarter", 1.25, 0, {33, 11, 1244, 702}},

                                         Layout{"turned", 1.5, 90, {7, 601, 708, 676}},
                                         Layout{"double", 2, 270, {100, 900, 600, 372}}),
                         [](const auto& layout) { return std::string(layout.param.name); });

} // namespace
} // namespace vantro::window

/// The compositor must be there before the application object.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const bool hasQtPart = QFileInfo::exists(QLibraryInfo::path(QLibraryInfo::PluginsPath) +
                                             "/platforms/libqwayland-generic.so");
    if (!hasQtPart || !vantro::test::SwayDesk::isInstalled() || testing::GTEST_FLAG(list_tests)) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        const QApplication application(argc, argv);
        return RUN_ALL_TESTS();
    }
    vantro::test::WaylandDesk session;
    vantro::test::SwayDesk sway(session);
    vantro::window::desk = &sway;
    qputenv("QT_QPA_PLATFORM", "wayland");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
