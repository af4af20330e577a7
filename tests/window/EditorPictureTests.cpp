#include "app/files/ProjectLock.h"
#include "app/files/ProjectStores.h"
#include "model/BackgroundCatalog.h"
#include "support/Ffmpeg.h"
#include "window/ScreenPictures.h"

#include <QPainter>
#include <cstring>

namespace vantro::window {
namespace {

TEST_P(ScreenPictureTest, Editor) {
    showEditor();
    EXPECT_EQ(text("loadingPreview").contains("Loading preview..."), !GetParam().isGerman);
    keep("editor-loading");
    EXPECT_TRUE(stageBecomes(test::colorOfSecond(0)));
    keep("editor");
    EXPECT_EQ(isLeftOf("export", "recordingName"), GetParam().isForeign);
    EXPECT_TRUE(isLeftOf("currentTimeLabel", "durationLabel")) << "time runs to the right";
    click("export");
    keep("export");
    exportScript = [this](const auto& progress) {
        progress(0.02);
        tasks.runMain();
        now += std::chrono::seconds(50);
        progress(0.42);
        tasks.runMain();
        keep("exporting");
    };
    click("exportNow");
    panels.answer("/tmp/demo.mp4");
    runTasks();
    state.setError("No space left on device", model::VantroError::Kind::exportFailed);
    keep("editor-alert", Texts::others);
}

/// Half a second each, with a sound that swells every other second.
void writePages(const std::filesystem::path& movie) {
    const auto pictures = movie.parent_path() / "pages.mov";
    test::writeMovie(pictures, 1280, 720, 2, 24, [](media::PixelBuffer& bgra, int frame) {
        const auto picture = pageOfText(frame / 2);
        for (int y = 0; y < bgra.height(); ++y)
            std::memcpy(bgra.mutableRow(0, y), picture.constScanLine(y),
                        static_cast<std::size_t>(picture.bytesPerLine()));
    });
    test::runFfmpeg("-i pages.mov -f lavfi -i \"aevalsrc='0.8*sin(2*PI*300*t)*"
                    "abs(sin(PI*t/2))':s=48000:d=12\" -c:v copy -c:a aac",
                    movie);
}

/// Twelve seconds with everything that an edit can hold.
model::Project fullProject(const std::filesystem::path& folder) {
    model::RecordingMetadata metadata;
    metadata.captureRect = {0, 0, 1280, 720};
    metadata.endTime = 12;
    metadata.hasSystemAudio = metadata.hasMicrophoneAudio = metadata.hasWebcam = true;
    metadata.cursorPositions = {{400, 300, 0}, {900, 220, 12}};
    metadata.clickEvents = {{.x = 400, .y = 300, .timestamp = 2},
                            {.x = 1000, .y = 220, .timestamp = 6},
                            {.x = 300, .y = 500, .timestamp = 9.5}};
    writePages(folder / "recording.mov");
    test::writeMovie(folder / "webcam.mov", 320, 240, 2, 24,
                     [](media::PixelBuffer& bgra, int) { test::fill(bgra, {96, 125, 139}); });
    auto project = test::plainProject(folder / "recording.mov", 2, metadata);
    project.name = "How to bring what was recorded into a film that everybody likes to look at";
    project.edit = model::freshEdit(metadata);
    project.edit.segments = {{{.startFraction = 0.05, .endFraction = 0.4},
                              {.startFraction = 0.4, .endFraction = 0.55, .speed = 2},
                              {.startFraction = 0.62, .endFraction = 0.95}}};
    return project;
}

/// What lies on the editor until it is answered.
TEST_P(ScreenPictureTest, EditorWithQuestions) {
    const auto folder = std::filesystem::path(files.path().toStdString());
    auto project = test::plainProject(folder / "recording.mov", 2);
    test::writeColorClock(folder / "recording.mov", 320, 180, 10, 4);
    const auto picture = folder / "A picture of mountains behind a lake.png";
    QImage(64, 64, QImage::Format_RGB32).save(QString::fromStdString(picture.string()));
    project.edit.background.type = model::BackgroundImageSource::custom(picture);
    const auto package = folder / "Onboarding of new colleagues in spring.vantro";
    app::files::saveProject(package, project, true);
    std::filesystem::remove(package / picture.filename());
    const auto held = app::files::ProjectLock::take(package);
    ASSERT_TRUE(held);
    projects.open(package);
    runTasks();
    EXPECT_TRUE(shows("readOnlyCard"));
    keep("editor-read-only", Texts::others);
    click("acceptButton");
    EXPECT_TRUE(shows("pictureCard"));
    keep("editor-picture-gone", Texts::others);
}

/// Places that the pointer went to, one of them with a zoom already.
TEST_P(ScreenPictureTest, EditorWithSuggestedZooms) {
    auto project = fullProject(files.path().toStdString());
    auto metadata = project.recording.metadata();
    metadata.cursorPositions = {{400, 300, 0},   {900, 500, 0.5}, {900, 500, 4},  {200, 200, 4.2},
                                {200, 200, 7.6}, {1000, 100, 8},  {1000, 100, 12}};
    project.recording = model::Recording(project.recording.movie(), metadata);
    project.edit.clickEvents = {{metadata.clickEvents[1]}};
    state.show(project);
    runTasks();
    ASSERT_TRUE(QTest::qWaitFor([this] { return preview.isReady(); }));
    actions.suggestions()->search();
    keep("editor-suggesting", Texts::others);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !actions.suggestions()->isSearching(); }));
    ASSERT_EQ(actions.suggestions()->count(), 2);
    keep("editor-suggested", Texts::others);
    actions.suggestions()->select(actions.suggestions()->zooms()[0].id);
    keep("editor-suggestion", Texts::others);
}

TEST_P(ScreenPictureTest, EditorWithEachGroupOfSettings) {
    auto project = fullProject(files.path().toStdString());
    state.show(project);
    runTasks();
    ASSERT_TRUE(QTest::qWaitFor([this] { return preview.isReady(); }));
    EXPECT_TRUE(QTest::qWaitFor([this] { return actions.strip()->hasPictures(); }));
    EXPECT_TRUE(QTest::qWaitFor([this] { return actions.strip()->peak(0.5, 1.5).high > 0; }));
    const auto reveal = [this](const char* first, const char* picture) {
        item(first).forceActiveFocus(Qt::TabFocusReason);
        keep(picture, Texts::others);
    };
    keep("editor-full", Texts::others);
    ASSERT_TRUE(QTest::qWaitFor([this] { return fillsStage(); }));
    keep("editor-full", Texts::others);
    click("moreColors");
    reveal("colorField", "editor-colors");
    state.setBackgroundSettings(
        {.type = model::BackgroundCatalog::application().builtIn("builtin-05").value()});
    reveal("choosePicture", "editor-picture");
    reveal("pointerScaleField", "editor-frame");
    reveal("removeAllZooms", "editor-zooms");
    reveal("webcamSizeField", "editor-webcam");
    reveal("noiseReduced", "editor-sound");
    item("stage").forceActiveFocus();
    state.setSelectedClickID(project.edit.clickEvents[1].id);
    keep("editor-zoom", Texts::others);
    state.setSelectedClickID({});
    state.setSelectedSegmentID(project.edit.segments[1].id);
    keep("editor-segment", Texts::others);
    state.setSelectedSegmentID({});
    actions.timeline()->setMark({.from = 0.3, .to = 0.5});
    keep("editor-range", Texts::others);
    actions.letGo();
    auto zooms = std::vector<model::ClickEvent>(state.editableClickEvents().begin(),
                                                state.editableClickEvents().end());
    zooms[1].id = model::Uuid::random(); // as if it had been added by hand
    state.setEditableClickEvents(zooms);
    click("recomputeZooms");
    EXPECT_TRUE(shows("recomputeCard"));
    keep("editor-recompute", Texts::others);
    key(Qt::Key_Escape);
    actions.timeline()->magnify(6, 300);
    keep("editor-magnified", Texts::others);
    actions.timeline()->fit();
    key(Qt::Key_Question);
    EXPECT_TRUE(shows("keyboardHelp"));
    keep("help", Texts::others);
    key(Qt::Key_Escape);
    click("export");
    keep("export-size", Texts::others);
    click("exportNow");
    panels.answer("/tmp/What was recorded, as a film that everybody likes to look at.mp4");
    runTasks();
    keep("export-done", Texts::others);
}

} // namespace
} // namespace vantro::window
