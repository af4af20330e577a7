#include "app/files/RecordingFolder.h"
#include "media/MovieRecovery.h"
#include "window/WindowFixture.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryFile>
#include <QTranslator>
#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace vantro::window {
namespace {

/// Translates every text into itself in brackets.
class Brackets : public QTranslator {
  public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* source, const char*, int) const override {
        return u'[' + QString::fromUtf8(source) + u']';
    }
};

struct Look {
    const char* name;
    ui::ThemeChoice theme;
    bool isForeign; ///< in another language, from right to left
};

/// Shows every screen in one look, keeps the pictures for people, and checks what can be checked
/// without taste: the theme's background, that no text is cut off at the window's edge, and that
/// all of ours can be translated.
class ScreenPictureTest : public test::WindowFixture, public testing::WithParamInterface<Look> {
  protected:
    ScreenPictureTest() {
        if (GetParam().isForeign) {
            QCoreApplication::installTranslator(&m_brackets);
            QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        }
        preferences.setTheme(GetParam().theme);
        showWindow();
    }
    ~ScreenPictureTest() override {
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        QCoreApplication::removeTranslator(&m_brackets);
    }

    enum class Texts { allOurs, others };

    void keep(const char* name, Texts texts = Texts::allOurs) {
        settle();
        keepPicture(QString::fromLatin1(GetParam().name) + u'-' + QString::fromLatin1(name));
        const auto corner = window().grabWindow().pixelColor(1, window().height() - 2);
        EXPECT_EQ(corner.lightness() < 128, GetParam().theme == ui::ThemeChoice::dark) << name;
        check(window().contentItem(), name, GetParam().isForeign && texts == Texts::allOurs);
    }
    bool isLeftOf(const char* a, const char* b) {
        return item(a).mapToScene({}).x() < item(b).mapToScene({}).x();
    }

  private:
    void check(QQuickItem* shown, const char* screen, bool isTranslated) {
        if (!shown->isVisible() || shown->clip())
            return;
        const auto text = shown->property("text").toString();
        if (shown->inherits("QQuickText") && !text.isEmpty()) {
            const auto rect = shown->mapRectToScene(shown->boundingRect());
            const QRectF bounds(QPointF(0, 0), QSizeF(window().size()));
            EXPECT_TRUE(bounds.contains(rect)) << screen << ": " << text.toStdString();
            const bool hasLetters =
                std::ranges::any_of(text, [](QChar letter) { return letter.isLetter(); });
            EXPECT_TRUE(!isTranslated || !hasLetters || text.startsWith(u'['))
                << screen << " is not translated: " << text.toStdString();
        }
        for (auto* child : shown->childItems())
            check(child, screen, isTranslated);
    }

    Brackets m_brackets;
};

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

INSTANTIATE_TEST_SUITE_P(Looks, ScreenPictureTest,
                         testing::Values(Look{"light", ui::ThemeChoice::light, false},
                                         Look{"dark", ui::ThemeChoice::dark, false},
                                         Look{"foreign", ui::ThemeChoice::light, true}),
                         [](const auto& look) { return look.param.name; });

} // namespace
} // namespace vantro::window
