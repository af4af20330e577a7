#include "app/files/RecordingFolder.h"
#include "media/MovieRecovery.h"
#include "model/BackgroundCatalog.h"
#include "window/ScreenPictures.h"
#include "window/overlay/SelectionOverlay.h"

#include <QPainter>
#include <QTemporaryFile>
#include <QTest>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace vantro::window {
namespace {

TEST_P(ScreenPictureTest, RecordingScreens) {
    keep("controls");
    EXPECT_EQ(isLeftOf("options", "systemAudio"), GetParam().isForeign);
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
    EXPECT_EQ(text("elapsed"), "01:23");
    window().close();
    keep("quit");
    app.keepRecording();
    platform.next->recorderStatus.condition = capture::RecordingCondition::streamStopped;
    timers.advance(std::chrono::seconds(1));
    keep("recording-ended");
    app.stop();
    keep("finishing");
    EXPECT_FALSE(item("stop").isEnabled());
}

TEST_P(ScreenPictureTest, StartWithRecordingsAndProjects) {
    ::setenv("TMPDIR", files.path().toStdString().c_str(), 1);
    const std::filesystem::path folder = files.path().toStdString();
    for (const auto* name :
         {"Tour", "A long name that tells all that is shown in this recording"}) {
        const auto movie = app::files::makeRecordingDirectory() / "recording.mov";
        test::writeColorClock(movie, 320, 180, 10, 2);
        app::files::nameRecording(movie, name);
    }
    const auto interrupted = app::files::makeRecordingDirectory() / "recording.mov";
    std::ofstream(interrupted) << "a movie that breaks off";
    std::ofstream(media::movieJournalPath(interrupted)) << "journal";
    for (const auto* name : {"Gone", "Release notes", "Onboarding of new colleagues in spring"}) {
        const auto package = folder / (std::string(name) + ".vantro");
        if (name != std::string_view("Gone"))
            std::filesystem::create_directory(package);
        preferences.addRecentProject(QString::fromStdString(package.string()));
    }
    recovery.find();
    runTasks();
    recovery.dismiss();
    keep("start", Texts::others);
    EXPECT_EQ(recordings.rowCount(), 3);
    recordings.askDelete(1);
    keep("delete");
    recovery.keep();
    app::files::EditJournal::begin(folder / "edits")->write({test::plainProject("/m.mov", 10), {}});
    journals.find();
    runTasks();
    keep("restore");
    journals.dismiss();
    showEditor();
    state.setCursorScale(1);
    window().close();
    keep("unsaved");
    ::unsetenv("TMPDIR");
}

TEST_P(ScreenPictureTest, PickerAndAlert) {
    state.setError("Display not found", model::VantroError::Kind::captureStartFailed);
    keep("alert", Texts::others);
    state.setShowError(false);

    content = capture::ShareableContent{};
    for (const auto* name : {"Terminal", "Web Browser", "Text Editor", "Files"})
        content->windows.push_back(
            test::windowOf(static_cast<std::uint32_t>(content->windows.size()) + 1,
                           std::string("A window of ") + name, name));
    state.setCaptureMode(model::CaptureMode::window);
    recording.beginCapture();
    keep("picker-loading");
    runTasks();
    keep("picker", Texts::others);
    content = capture::ShareableContent{};
    timers.advance(std::chrono::seconds(1));
    runTasks();
    keep("picker-empty");
    EXPECT_FALSE(shows("pickerError"));
    content = std::unexpected("cannot open display :9");
    timers.advance(std::chrono::seconds(1));
    runTasks();
    keep("picker-error", Texts::others);
    EXPECT_EQ(text("pickerError"), "cannot open display :9");
}

TEST_P(ScreenPictureTest, Editor) {
    showEditor();
    EXPECT_EQ(text("loadingPreview").contains("Loading preview..."), true);
    keep("editor-loading");
    EXPECT_TRUE(stageBecomes(test::colorOfSecond(0)));
    keep("editor");
    EXPECT_EQ(isLeftOf("export", "recordingName"), GetParam().isForeign);
    EXPECT_TRUE(isLeftOf("currentTimeLabel", "durationLabel")) << "time runs to the right";
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
    keep("editor-alert", Texts::others);
}

/// A page of text, as it is recorded most often.
QImage page(int second) {
    QImage picture(1280, 720, QImage::Format_RGB32);
    picture.fill(QColor("#f4f5f7"));
    QPainter painter(&picture);
    painter.fillRect(0, 0, 1280, 64, QColor("#1f3a5f"));
    for (int line = 0; line < 14; ++line)
        painter.fillRect(90, 120 + line * 40, 300 + line * 97 % 500, 14, QColor("#9aa5b1"));
    painter.fillRect(900, 130, 290, 190, QColor::fromHsv(second * 37 % 360, 120, 220));
    painter.fillRect(900, 350, 290, 290, QColor("#dfe3e8"));
    return picture;
}

void writePages(const std::filesystem::path& movie) {
    test::writeMovie(movie, 1280, 720, 2, 24, [](media::PixelBuffer& bgra, int frame) {
        const auto picture = page(frame / 2);
        for (int y = 0; y < bgra.height(); ++y)
            std::memcpy(bgra.mutableRow(0, y), picture.constScanLine(y),
                        static_cast<std::size_t>(picture.bytesPerLine()));
    });
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

TEST_P(ScreenPictureTest, EditorWithEachGroupOfSettings) {
    const auto project = fullProject(files.path().toStdString());
    state.show(project);
    runTasks();
    ASSERT_TRUE(QTest::qWaitFor([this] { return preview.isReady(); }));
    EXPECT_TRUE(QTest::qWaitFor([this] { return actions.strip()->hasPictures(); }));
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
    reveal("microphoneVolumeField", "editor-sound");
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
    actions.timeline()->magnify(6, 300);
    keep("editor-magnified", Texts::others);
    actions.timeline()->fit();
    key(Qt::Key_Question);
    keep("help", Texts::others);
    key(Qt::Key_Escape);
    click("export");
    click("exportNow");
    panels.answer("/tmp/What was recorded, as a film that everybody likes to look at.mp4");
    runTasks();
    keep("export-done", Texts::others);
}

TEST(AreaPicture, IsDraggedOut) {
    QImage backdrop = page(3);
    overlay::SelectionOverlay area(QGuiApplication::primaryScreen(), backdrop, {}, {});
    area.resize(backdrop.size());
    QTest::mousePress(&area, Qt::LeftButton, {}, {380, 200});
    QTest::mouseMove(&area, {700, 400});
    QTest::mouseMove(&area, {960, 560});
    QPainter painter(&backdrop);
    area.paint(painter);
    test::keepPicture(backdrop, QStringLiteral("area"));
}

INSTANTIATE_TEST_SUITE_P(Looks, ScreenPictureTest,
                         testing::Values(Look{"light", ui::ThemeChoice::light, false},
                                         Look{"dark", ui::ThemeChoice::dark, false},
                                         Look{"foreign", ui::ThemeChoice::light, true}),
                         [](const auto& look) { return look.param.name; });

} // namespace
} // namespace vantro::window
