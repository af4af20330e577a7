#include "window/WindowFixture.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryFile>

namespace vantro::window {
namespace {

/// Shows every screen in one theme, keeps the pictures for people, and checks what can be checked
/// without taste: the theme's background, and that no text is cut off at the window's edge.
class ScreenPictureTest : public test::WindowFixture, public testing::WithParamInterface<bool> {
  protected:
    void keep(const QString& name) {
        settle();
        keepPicture((GetParam() ? QStringLiteral("dark-") : QStringLiteral("light-")) + name);
        const auto corner = window().grabWindow().pixelColor(1, window().height() - 2);
        EXPECT_EQ(corner.lightness() < 128, GetParam()) << name.toStdString();
        expectInside(window().contentItem(), name);
    }

    void expectInside(QQuickItem* item, const QString& screen) {
        if (!item->isVisible() || item->clip())
            return;
        const auto text = item->property("text").toString();
        if (item->inherits("QQuickText") && !text.isEmpty()) {
            const auto rect = item->mapRectToScene(item->boundingRect());
            const QRectF bounds(QPointF(0, 0), QSizeF(window().size()));
            EXPECT_TRUE(bounds.contains(rect))
                << screen.toStdString() << ": " << text.toStdString();
        }
        for (auto* child : item->childItems())
            expectInside(child, screen);
    }
};

TEST_P(ScreenPictureTest, RecordingScreens) {
    preferences.setTheme(GetParam() ? ui::ThemeChoice::dark : ui::ThemeChoice::light);
    showWindow();
    keep("controls");
    QTemporaryFile movie;
    ASSERT_TRUE(movie.open());
    recovery.offer(movie.fileName().toStdString());
    keep("recovery");
    recovery.dismiss();
    permission.setScreenRecordingGranted(false);
    keep("waiting");
    permission.setScreenRecordingGranted(true);

    recording.beginCapture();
    keep("selecting");
    recording.areaCancelled();

    recording.setCountdown(3);
    record();
    keep("countdown");
    recording.cancelPreparation();
    recording.setCountdown(0);

    record();
    timers.advance(std::chrono::seconds(83));
    keep("recording");
    window().close();
    keep("quit");
    app.keepRecording();
    platform.next->recorderStatus.condition = capture::RecordingCondition::streamStopped;
    timers.advance(std::chrono::seconds(1));
    keep("recording-ended");
}

TEST_P(ScreenPictureTest, PickerAndAlert) {
    preferences.setTheme(GetParam() ? ui::ThemeChoice::dark : ui::ThemeChoice::light);
    showWindow();
    state.setError("Display not found", model::VantroError::Kind::captureStartFailed);
    keep("alert");
    state.setShowError(false);

    content = capture::ShareableContent{};
    for (const auto* name : {"Terminal", "Web Browser", "Text Editor", "Files"}) {
        auto shown = test::windowOf(static_cast<std::uint32_t>(content->windows.size()) + 1,
                                    std::string("A window of ") + name, {0, 0, 500, 400});
        shown.applicationName = name;
        shown.bundleIdentifier = name;
        shown.isOnScreen = true;
        content->windows.push_back(shown);
    }
    state.setCaptureMode(model::CaptureMode::window);
    recording.beginCapture();
    keep("picker-loading");
    runTasks();
    keep("picker");
    content = capture::ShareableContent{};
    timers.advance(std::chrono::seconds(1));
    runTasks();
    keep("picker-empty");
    content = std::unexpected("cannot open display :9");
    timers.advance(std::chrono::seconds(1));
    runTasks();
    keep("picker-error");
}

TEST_P(ScreenPictureTest, Editor) {
    preferences.setTheme(GetParam() ? ui::ThemeChoice::dark : ui::ThemeChoice::light);
    showWindow();
    showEditor();
    preview.setPosition(7.3);
    runTasks();
    keep("editor");
    click("export");
    keep("export");
    exportScript = [this](const auto& progress) {
        progress(0.42);
        tasks.runMain();
        keep("exporting");
    };
    click("exportNow");
    panels.answer("/tmp/demo.mp4");
    runTasks();
    state.setError("No space left on device", model::VantroError::Kind::exportFailed);
    keep("editor-alert");
}

INSTANTIATE_TEST_SUITE_P(Themes, ScreenPictureTest, testing::Bool(),
                         [](const auto& theme) { return theme.param ? "Dark" : "Light"; });

} // namespace
} // namespace vantro::window
