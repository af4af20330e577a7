#include "window/WindowFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <cmath>

namespace vantro::editor {
namespace {

using testing::ElementsAre;

using test::colorOfSecond;

class EditorScreenTest : public test::WindowFixture {
  protected:
    EditorScreenTest() { showWindow(); }

    /// Waits for the first picture.
    void open(const model::Edit& edit = {}) {
        showEditor(edit);
        ASSERT_TRUE(stageBecomes(colorOfSecond(0)));
        ASSERT_TRUE(playheadBecomes(0));
    }
    bool playheadBecomes(double seconds) {
        return QTest::qWaitFor(
            [&] { return std::abs(transport().currentTime() - seconds) < 0.01; });
    }
    PlayerTimeObserver& transport() { return *preview.transport(); }
};

TEST_F(EditorScreenTest, ShowsTheFilmInTheMiddleOfABlackStageOrWhyItCannot) {
    open();
    auto& stage = item("stage");
    const auto shot = window().grabWindow();
    const auto middle = stage.mapToScene({stage.width() / 2, stage.height() / 2}).toPoint();
    EXPECT_EQ(shot.pixelColor(middle + QPoint(162, 0)), QColor(Qt::black)) << "not enlarged";
    EXPECT_NEAR(shot.pixelColor(middle + QPoint(157, 87)).red(), colorOfSecond(0).red, 8);
    EXPECT_EQ(text("currentTimeLabel"), "00:00");
    EXPECT_EQ(text("durationLabel"), "00:04");

    previewProblem = "No video track found";
    state.reset();
    showEditor();
    EXPECT_TRUE(QTest::qWaitFor([this] { return shows("previewProblem"); }));
    EXPECT_EQ(text("previewProblem"), "No video track found");
    EXPECT_FALSE(shows("picture"));
}

TEST_F(EditorScreenTest, SavingKeepsThePlayerAndAnotherRecordingBeginsAnew) {
    open();
    transport().seek(0.6);
    ASSERT_TRUE(stageBecomes(colorOfSecond(2)));
    const auto* player = preview.player();
    auto project = *state.document().project();
    const auto movie = project.recording.movie();
    project.recording = project.recording.movedTo("/saved.vantro/recording.mov");
    state.saved(project, movie, "/saved.vantro");
    settle();
    EXPECT_EQ(preview.player(), player);
    EXPECT_TRUE(playheadBecomes(2.4));
    open(); // another recording with equal files
    EXPECT_NE(preview.player(), player);
    state.reset();
    runTasks();
    EXPECT_EQ(preview.player(), nullptr);
}

TEST_F(EditorScreenTest, ExportsInTheChosenFormatResolutionAndQuality) {
    showEditor();
    click("export");
    item("exportResolution").setProperty("currentIndex", 2);
    item("exportQuality").setProperty("currentIndex", 2);
    click("exportNow");
    EXPECT_EQ(panels.kind, app::flows::PanelKind::saveMovie);
    panels.answer("/tmp/demo.mp4");
    runTasks();
    click("export");
    item("exportFormat").setProperty("currentIndex", 1);
    EXPECT_FALSE(item("exportResolution").isEnabled()) << "a GIF has a size of its own";
    EXPECT_FALSE(item("exportQuality").isEnabled());
    click("exportNow");
    EXPECT_EQ(panels.kind, app::flows::PanelKind::saveGif);
    panels.answer("/tmp/demo.gif");
    runTasks();
    ASSERT_EQ(exports.size(), 2U);
    EXPECT_EQ(exports[0].format, app::flows::ExportFormat::mp4);
    EXPECT_EQ(exports[0].resolution, exporting::ExportResolution::hd1080);
    EXPECT_EQ(exports[0].quality, media::VideoQuality::small);
    EXPECT_EQ(exports[1].format, app::flows::ExportFormat::gif);
    EXPECT_EQ(text("exportedText"), "Exported demo.gif");
    EXPECT_THAT(editor.resolutions(), ElementsAre("Original", "4K (3840x2160)", "1080p", "720p"));
}

TEST_F(EditorScreenTest, AnExportShowsItsProgressAndCanBeCancelled) {
    showEditor();
    exportScript = [this](const auto& progress) {
        now += std::chrono::seconds(10);
        progress(0.424);
        tasks.runMain();
        settle();
        EXPECT_EQ(text("exportProgress"), "42%");
        EXPECT_EQ(text("timeLeft"), "About 14 s left");
        EXPECT_FALSE(shows("export"));
        EXPECT_FALSE(item("saveProject").isEnabled());
        click("cancelExport");
        EXPECT_FALSE(editor.exporting());
    };
    key(Qt::Key_E, Qt::ControlModifier);
    click("exportNow");
    panels.answer("/tmp/demo.mp4");
    runTasks();
    EXPECT_EQ(exports.size(), 1U);
    EXPECT_EQ(state.phase(), app::AppPhase::previewing());
    EXPECT_TRUE(shows("export"));
    EXPECT_FALSE(shows("exportDone"));
}

TEST_F(EditorScreenTest, AFinishedExportIsShownInItsFolderAndCopied) {
    showEditor();
    click("export");
    EXPECT_TRUE(text("sizeEstimate").isEmpty()) << "a recording of no known size";
    click("exportNow");
    panels.answer("/tmp/a film.mp4");
    runTasks();
    click("showInFolder");
    EXPECT_EQ(shownInFolder, "/tmp/a film.mp4");
    click("copyFile");
    const auto* copied = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(copied->data("text/uri-list").trimmed(), "file:///tmp/a%20film.mp4");
    EXPECT_EQ(copied->data("x-special/gnome-copied-files"), "copy\nfile:///tmp/a%20film.mp4");
    click("forgetExported");
    EXPECT_FALSE(shows("exportDone"));
}

TEST_F(EditorScreenTest, TheFrameAtThePlayheadIsCopiedAndSavedAsTheFilmShowsIt) {
    model::Edit edit;
    edit.canvasAspectRatio = model::CanvasAspectRatio::ratio1x1;
    open(edit);
    transport().seek(0.65);
    ASSERT_TRUE(playheadBecomes(2.6));
    click("export");
    click("copyFrame");
    runTasks();
    const auto copied = QGuiApplication::clipboard()->image();
    EXPECT_EQ(text("notice"), "Copied the frame");
    EXPECT_EQ(copied.size(), QSize(320, 320)) << "the canvas's own size";
    const auto blue = copied.pixelColor(160, 160);
    EXPECT_LT(test::distance({blue.red(), blue.green(), blue.blue()}, colorOfSecond(2)), 8);
    EXPECT_EQ(copied.pixelColor(160, 10).name(), "#262626");

    const auto file = files.filePath(QStringLiteral("frame.png"));
    click("export");
    click("saveFrame");
    EXPECT_EQ(panels.kind, app::flows::PanelKind::saveFrame);
    EXPECT_EQ(panels.proposedName, "demo.png");
    panels.answer(file.toStdString());
    runTasks();
    EXPECT_EQ(QImage(file).convertToFormat(QImage::Format_RGB32), copied);
    click("export");
    click("saveFrame");
    panels.answer("/nonexistent/frame.png");
    runTasks();
    test::expectError(state, model::VantroError::Kind::exportFailed, "/nonexistent/frame.png");
}

} // namespace
} // namespace vantro::editor
