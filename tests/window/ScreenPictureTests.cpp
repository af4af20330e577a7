#include "app/files/RecordingFolder.h"
#include "media/MovieRecovery.h"
#include "window/ScreenPictures.h"
#include "window/SettingsWindow.h"
#include "window/overlay/SelectionOverlay.h"

#include <QPainter>
#include <QTemporaryFile>
#include <cstdlib>
#include <fstream>
namespace vantro::window {
namespace {

TEST_P(ScreenPictureTest, RecordingScreens) {
    microphones.setDevices({{QStringLiteral("a"), QStringLiteral("Built-in"), true}});
    state.setMicrophoneAudioEnabled(true);
    readings = {{capture::SoundKind::system, {{.level = 0.25F, .isSilent = false}}},
                {capture::SoundKind::microphone, {{.level = 0, .isSilent = true}}}};
    timers.advance(std::chrono::milliseconds(60));
    keep("controls-silent");
    readings[capture::SoundKind::microphone] = {{.level = 0.03F, .isSilent = false}};
    timers.advance(std::chrono::milliseconds(60));
    keep("controls");
    EXPECT_EQ(isLeftOf("options", "systemAudio"), GetParam().isForeign);
    platform.attached[0].name = "A display with a long name and number 27U-4100, at the window";
    platform.attached[1].name = "Built-in";
    displays.refresh();
    state.setCaptureMode(model::CaptureMode::screen);
    keep("controls-screen", Texts::others);
    state.setCaptureMode(model::CaptureMode::window);
    keep("controls-window");
    state.setCaptureMode(model::CaptureMode::area);
    platform.able.areas.whyNot = "This desktop cannot freeze its screen";
    guard.askAgain();
    keep("controls-unable", Texts::others);
    platform.able = {};
    guard.askAgain();
    QTemporaryFile movie;
    ASSERT_TRUE(movie.open());
    recovery.offer(movie.fileName().toStdString());
    keep("recovery");
    recovery.dismiss();
    permission.setScreenRecordingGranted(false);
    keep("waiting");
    permission.setScreenRecordingGranted(true);

    recording.preparation().begin();
    keep("selecting");
    recording.preparation().areaCancelled();

    recording.preparation().setCountdown(3);
    record();
    keep("countdown");
    recording.preparation().cancel();
    recording.preparation().setCountdown(0);

    record();
    platform.next->recorderStatus.sounds = {
        {.kind = capture::SoundKind::system, .level = 0.25F, .isSilent = false},
        {.kind = capture::SoundKind::microphone, .level = 0.9F, .isSilent = false}};
    timers.advance(std::chrono::seconds(83));
    keep("recording");
    EXPECT_EQ(text("elapsed"), "01:23");
    recording.pause();
    keep("recording-paused");
    recording.resume();
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
    test::Environment variables;
    variables.set("TMPDIR", files.path().toStdString());
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
    recording.preparation().begin();
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
    EXPECT_TRUE(text("pickerError").contains(":9"));
}

TEST_P(ScreenPictureTest, Settings) {
    KeysFromAnywhere keys{preferences,
                          {[](const auto&, auto) { return nullptr; }, GetParam().isForeign},
                          [](auto) {}};
    SettingsWindow settings(preferences, appearance, keys);
    front = &settings.window();
    settings.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(front));
    keep("settings", Texts::others); // paths and keys are not translated
}

TEST(AreaPicture, IsDraggedOut) {
    QImage backdrop = pageOfText(3);
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
                                         Look{"foreign", ui::ThemeChoice::light, true},
                                         Look{"german", ui::ThemeChoice::light, false, true}),
                         [](const auto& look) { return look.param.name; });

} // namespace
} // namespace vantro::window
