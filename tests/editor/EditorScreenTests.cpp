#include "window/WindowFixture.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gmock/gmock.h>

namespace vantro::editor {
namespace {

using testing::ElementsAre;

class EditorScreenTest : public test::WindowFixture {
  protected:
    EditorScreenTest() {
        showWindow();
        showEditor();
    }
};

TEST_F(EditorScreenTest, ShowsTheComposedPictureAtItsOwnSizeOrWhyThereIsNone) {
    const auto shot = window().grabWindow();
    auto& picture = item("picture");
    const auto middle = picture.mapToScene({picture.width() / 2, picture.height() / 2}).toPoint();
    EXPECT_NEAR(shot.pixelColor(middle).blue(), 120, 2);
    EXPECT_NEAR(shot.pixelColor(middle + QPoint(315, 0)).green(), 169, 2);
    EXPECT_NE(shot.pixelColor(middle + QPoint(325, 0)).red(), 40) << "not enlarged";
    EXPECT_EQ(text("durationLabel"), "0:20.0");
    EXPECT_EQ(text("pictureText"), "");
    previewProblem = "Export failed: No video track found";
    state.setCursorScale(1);
    runTasks();
    EXPECT_EQ(text("pictureText"), "Export failed: No video track found");
}

TEST_F(EditorScreenTest, TheSliderMovesThePositionByMouseAndKeyboard) {
    click("position");
    EXPECT_NEAR(editor.position(), 10, 0.1);
    const double before = editor.position();
    item("position").forceActiveFocus();
    key(Qt::Key_Right);
    runTasks();
    EXPECT_NEAR(drawnPositions.back(), before + 0.1, 1e-9);
}

TEST_F(EditorScreenTest, ExportsInTheChosenFormatResolutionAndQuality) {
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
    EXPECT_EQ(text("notice"), "Exported demo.gif");
    EXPECT_THAT(editor.resolutions(), ElementsAre("Original", "4K (3840x2160)", "1080p", "720p"));
}

TEST_F(EditorScreenTest, AnExportShowsItsProgressAndCanBeCancelled) {
    exportScript = [this](const auto& progress) {
        progress(0.424);
        tasks.runMain();
        settle();
        EXPECT_EQ(text("exportProgress"), "42%");
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
    EXPECT_EQ(text("notice"), "");
}

class StillPreviewTest : public test::WindowFixture {
  protected:
    StillPreviewTest() { showEditor(); }
};

TEST_F(StillPreviewTest, DrawsOneAtATimeAndThenTheLatestPosition) {
    EXPECT_THAT(drawnPositions, ElementsAre(0));
    for (const double position : {3.0, 5.0, 7.0})
        preview.setPosition(position);
    EXPECT_EQ(tasks.waitingWork(), 1U);
    runTasks();
    EXPECT_THAT(drawnPositions, ElementsAre(0, 3, 7));
}

TEST_F(StillPreviewTest, AnEditKeepsThePositionAndDropsThePictureOfTheOneBefore) {
    preview.setPosition(5);
    int pictures = 0;
    QObject::connect(&preview, &StillPreview::pictureChanged, [&] { ++pictures; });
    state.setCursorScale(1.5);
    settle();
    tasks.runWork(); // of the edit before
    tasks.runMain();
    EXPECT_EQ(pictures, 0);
    runTasks();
    EXPECT_EQ(pictures, 1);
    EXPECT_EQ(preview.position(), 5);
}

TEST_F(StillPreviewTest, SavingKeepsThePictureAndAnotherRecordingClearsIt) {
    preview.setPosition(5);
    runTasks();
    auto project = *state.document().project();
    project.recording = project.recording.movedTo("/saved.vantro/recording.mov");
    state.saved(project, "/nowhere/recording.mov", "/saved.vantro");
    settle();
    EXPECT_FALSE(preview.picture().isNull());
    EXPECT_EQ(preview.position(), 5);
    model::RecordingMetadata other;
    other.endTime = 4;
    state.show({"other", model::Recording("/other/recording.mov", other), {}});
    settle();
    EXPECT_TRUE(preview.picture().isNull());
    EXPECT_EQ(preview.position(), 0);
    state.reset();
    runTasks();
    EXPECT_TRUE(preview.picture().isNull()) << "what was being drawn belongs to nothing now";
}

} // namespace
} // namespace vantro::editor
