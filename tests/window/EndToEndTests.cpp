#include "app/files/ProjectPackage.h"
#include "media/Asset.h"
#include "model/Json.h"
#include "support/Eventually.h"
#include "support/TestWindow.h"
#include "support/XorgDesk.h"
#include "window/DesktopSession.h"

#include <csignal>
#include <fstream>
#include <sstream>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::window {
namespace {

namespace fs = std::filesystem;
using test::eventually;

constexpr QSize controlsSize(340, 120);
constexpr QSize recordingSize(220, 54);
constexpr QSize editorSize(980, 680);
constexpr QPoint recordButton(170, 82);
constexpr QPoint stopButton(180, 27);
constexpr QPoint screenMode(60, 28);
constexpr QPoint windowMode(170, 28);
constexpr QPoint areaMode(280, 28);
constexpr QSize pickerSize(400, 440);

/// The one recording that was made.
struct Recorded {
    fs::path folder;
    model::RecordingMetadata metadata;
    media::Asset movie;
};

Recorded recordedIn(const fs::path& recordings) {
    const fs::path folder = *fs::directory_iterator(recordings);
    std::ifstream file(folder / "metadata.json");
    std::ostringstream json;
    json << file.rdbuf();
    return {.folder = folder,
            .metadata = model::decodeMetadata(json.view()),
            .movie = media::Asset::open(folder / "recording.mov")};
}

model::Size movieSize(const Recorded& recorded) {
    return recorded.movie.tracks(media::MediaType::video).at(0).naturalSize;
}

class EndToEndTest : public testing::Test {
  protected:
    void start() {
        session.startProgram();
        ASSERT_TRUE(session.mainWindowBecomes(controlsSize)) << errors();
    }
    std::string errors() { return session.program().readAllStandardError().toStdString(); }
    /// Moves the pointer about, as somebody does who shows something.
    void useTheScreen() {
        for (int step = 0; step < 30; ++step)
            session.xdo({"mousemove", QString::number(500 + 5 * step), "450"});
    }
    void click(QPoint at) { session.clickMain(at.x(), at.y()); }
    bool hasEnded() {
        return eventually([this] { return session.program().waitForFinished(1); });
    }

    test::DesktopSession session;
};

TEST_F(EndToEndTest, TwoClicksRecordTheScreenAndTheEditorFollows) {
    const test::TestWindow shown(session.server(), {600, 500, 200, 200}, 0x00ff00);
    start();
    click(screenMode);
    click(recordButton);
    ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    const auto recordingWindow = session.window(QStringLiteral("Vantro"));
    EXPECT_GT(recordingWindow.x(), 900) << "the window steps aside";
    session.xdo({"mousemove", "700", "600", "click", "1"});
    click(stopButton);
    ASSERT_TRUE(session.mainWindowBecomes(editorSize)) << errors();

    const auto recorded = recordedIn(session.recordings());
    EXPECT_EQ(movieSize(recorded), (model::Size{1280, 900}));
    EXPECT_EQ(recorded.metadata.captureRect, (model::Rect{0, 0, 1280, 900}));
    EXPECT_GT(recorded.movie.duration().seconds(), 0.1);
    const auto& clicks = recorded.metadata.clickEvents;
    ASSERT_GE(clicks.size(), 1U);
    EXPECT_NEAR(clicks[0].x, 700, 1);
    EXPECT_NEAR(clicks[0].y, 600, 1);
}

TEST_F(EndToEndTest, KeysRecordAndStopAndSaveAProject) {
    start();
    click(screenMode);
    session.xdo({"key", "ctrl+r"});
    ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    useTheScreen();
    session.xdo({"key", "ctrl+s"});
    ASSERT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
    session.xdo({"key", "ctrl+s"});
    ASSERT_TRUE(
        eventually([this] { return !session.window(QStringLiteral("Save Project.*")).isNull(); }));
    const auto package = session.home() / "tour.vantro";
    session.xdo({"key", "ctrl+a"});
    session.xdo({"type", QString::fromStdString(package.string())});
    session.xdo({"key", "Return"});
    ASSERT_TRUE(eventually([&] { return fs::exists(package / "project.json"); })) << errors();
    const auto project = app::files::readProjectFile(package);
    EXPECT_EQ(project.recording.metadata().captureRect, (model::Rect{0, 0, 1280, 900}));
    EXPECT_FALSE(
        media::Asset::open(package / "recording.mov").tracks(media::MediaType::video).empty());
}

TEST_F(EndToEndTest, ADraggedAreaIsRecordedAtItsEvenSize) {
    start();
    click(recordButton);
    ASSERT_TRUE(eventually([this] {
        return session.window(QStringLiteral("Select area")).size() == QSize(1280, 900);
    })) << errors();
    session.xdo({"mousemove", "400", "300", "mousedown", "1"});
    session.xdo({"mousemove", "500", "350"});
    session.xdo({"mousemove", "701", "501"});
    session.xdo({"mouseup", "1"});
    ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    useTheScreen();
    click(stopButton);
    ASSERT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
    const auto recorded = recordedIn(session.recordings());
    EXPECT_EQ(recorded.metadata.captureRect, (model::Rect{400, 300, 300, 200}));
    EXPECT_EQ(movieSize(recorded), (model::Size{300, 200}));
}

TEST_F(EndToEndTest, AWindowChosenFromTheListIsRecordedWithItsFrame) {
    session.startOther(QStringLiteral("xterm"),
                       {"-title", "Notes", "-geometry", "60x20+500+300", "-e", "sleep", "600"});
    ASSERT_TRUE(eventually([this] { return !session.window(QStringLiteral("Notes")).isNull(); }));
    const auto inner = session.window(QStringLiteral("Notes"));
    start();
    click(windowMode);
    click(recordButton);
    ASSERT_TRUE(session.mainWindowBecomes(pickerSize)) << errors();
    // A row can be chosen once the list has come, and a click on none does nothing.
    ASSERT_TRUE(eventually([this] {
        click({200, 80});
        return session.window(QStringLiteral("Vantro")).size() == recordingSize;
    })) << errors();
    useTheScreen();
    click(stopButton);
    ASSERT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
    const auto recorded = recordedIn(session.recordings());
    const auto& rect = recorded.metadata.captureRect;
    EXPECT_LE(rect.x, inner.x());
    EXPECT_LT(rect.y, inner.y()) << "the title bar belongs to it";
    EXPECT_GT(rect.height, inner.height());
    EXPECT_NEAR(movieSize(recorded).width, rect.width, 1);
}

TEST_F(EndToEndTest, EscapeClosesTheOverlayAndTheControlsAreBack) {
    start();
    click(recordButton);
    const auto overlayIsShown = [this] {
        return !session.window(QStringLiteral("Select area")).isNull();
    };
    ASSERT_TRUE(eventually(overlayIsShown)) << errors();
    session.xdo({"mousemove", "400", "300", "mousedown", "1"});
    session.xdo({"mousemove", "600", "400"});
    session.xdo({"key", "Escape"});
    session.xdo({"mouseup", "1"});
    EXPECT_TRUE(eventually([&] { return !overlayIsShown(); }));
    EXPECT_TRUE(session.mainWindowBecomes(controlsSize));
    EXPECT_FALSE(fs::exists(session.recordings()));
}

TEST_F(EndToEndTest, EscapeLeavesTheOverlayEvenWhenAnotherWindowHasTheFocus) {
    const auto overlay = QStringLiteral("Select area");
    session.startOther(QStringLiteral("xterm"), {"-title", "Notes", "-e", "sleep", "600"});
    ASSERT_TRUE(eventually([this] { return !session.window(QStringLiteral("Notes")).isNull(); }));
    start();
    click(recordButton);
    ASSERT_TRUE(eventually([&] { return !session.window(overlay).isNull(); })) << errors();
    session.xdo({"search", "--name", "^Notes$", "windowfocus", "--sync"});
    session.xdo({"key", "Escape"});
    EXPECT_TRUE(eventually([&] { return session.window(overlay).isNull(); }));
}

TEST_F(EndToEndTest, ASmallScreenAfterAMaximizedEditorIsSmall) {
    start();
    click(screenMode);
    session.xdo({"key", "ctrl+r"});
    ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    session.xdo({"key", "ctrl+s"});
    ASSERT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
    const auto bar = session.window(QStringLiteral("Vantro")).topLeft() + QPoint(490, -10);
    session.xdo({"mousemove", QString::number(bar.x()), QString::number(bar.y()), "click",
                 "--repeat", "2", "--delay", "50", "1"});
    ASSERT_TRUE(
        eventually([this] { return session.window(QStringLiteral("Vantro")).width() == 1280; }));
    session.xdo({"key", "ctrl+n"});
    EXPECT_TRUE(session.mainWindowBecomes(controlsSize));
}

TEST_F(EndToEndTest, BeingToldToEndFinishesTheRecording) {
    start();
    click(screenMode);
    click(recordButton);
    ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    useTheScreen();
    ::kill(static_cast<pid_t>(session.program().processId()), SIGTERM);
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(session.program().exitCode(), 0);
    EXPECT_EQ(movieSize(recordedIn(session.recordings())), (model::Size{1280, 900}));

    session.startProgram();
    EXPECT_TRUE(eventually([this] {
        return session.window(QStringLiteral("Vantro")).height() > controlsSize.height();
    })) << "the recording is offered again";
    session.xdo({"key", "Return"});
    EXPECT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
}

TEST_F(EndToEndTest, AKilledRecordingIsRecoveredAtTheNextStart) {
    start();
    click(screenMode);
    click(recordButton);
    ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    session.xdo({"mousemove", "700", "600", "click", "1"});
    useTheScreen();
    session.program().kill();
    ASSERT_TRUE(hasEnded());

    session.startProgram();
    EXPECT_TRUE(eventually([this] {
        return session.window(QStringLiteral("Vantro")).height() > controlsSize.height();
    })) << "the recording is offered";
    session.xdo({"key", "Return"});
    ASSERT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
    const auto recorded = recordedIn(session.recordings());
    EXPECT_EQ(movieSize(recorded), (model::Size{1280, 900}));
    EXPECT_NEAR(recorded.movie.duration().seconds(), recorded.metadata.endTime, 0.1);
    ASSERT_EQ(recorded.metadata.clickEvents.size(), 1U);
    EXPECT_EQ(recorded.metadata.clickEvents[0].x, 700);
}

/// A desktop of two displays side by side, the left one being the main one.
class TwoDisplaysTest : public EndToEndTest {
  protected:
    TwoDisplaysTest() {
        // The server's only output goes to the first, so that it is no display of its own.
        for (const auto& [name, place, output] :
             {std::tuple{"*left", "700/100x900/100+0+0", "screen"},
              {"right", "580/100x900/100+700+0", "none"}})
            test::runXrandr(session.server().display(), {"--setmonitor", name, place, output});
    }
    void startWith(QPoint mode, QSize size) {
        session.startProgram();
        ASSERT_TRUE(session.mainWindowBecomes(controlsSize)) << errors();
        click(mode);
        ASSERT_TRUE(session.mainWindowBecomes(size)) << errors();
    }
    Recorded stopped() {
        useTheScreen();
        click(stopButton);
        EXPECT_TRUE(eventually([this] {
            return session.window(QStringLiteral("Vantro")).height() > recordingSize.height();
        })) << errors();
        return recordedIn(session.recordings());
    }
};

TEST_F(TwoDisplaysTest, AnAreaIsDraggedOutOnAnyOfThem) {
    startWith(areaMode, controlsSize);
    click(recordButton);
    ASSERT_TRUE(eventually([this] {
        return session.xdoOutput({"search", "--onlyvisible", "--name", "^Select area$"}).size() ==
               2;
    })) << errors();
    session.keepPicture(QStringLiteral("two-displays"));
    session.xdo({"mousemove", "800", "300", "mousedown", "1"});
    session.xdo({"mousemove", "900", "350"});
    session.xdo({"mousemove", "1101", "501"});
    session.keepPicture(QStringLiteral("two-displays-drag"));
    session.xdo({"mouseup", "1"});
    ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    const auto recorded = stopped();
    EXPECT_EQ(recorded.metadata.captureRect, (model::Rect{800, 300, 300, 200}));
    EXPECT_EQ(movieSize(recorded), (model::Size{300, 200}));
}

TEST_F(TwoDisplaysTest, ScreenModeRecordsTheChosenOne) {
    startWith(screenMode, controlsSize + QSize(0, 38));
    session.xdo({"key", "Tab", "Down"});
    session.xdo({"key", "ctrl+r"});
    ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    const auto recorded = stopped();
    EXPECT_EQ(recorded.metadata.captureRect, (model::Rect{700, 0, 580, 900}));
    EXPECT_EQ(movieSize(recorded), (model::Size{580, 900}));
}

TEST(EndToEnd, UnderFractionalScalingTheAreaIsWhatWasDragged) {
    for (const auto& [textResolution, expected] :
         {std::pair{144, model::Rect{400, 300, 300, 200}},
          std::pair{192, model::Rect{200, 150, 150, 100}}}) {
        test::DesktopSession session(textResolution);
        const double scale = textResolution / 96.0;
        const auto scaled = [scale](QSize size) { return (QSizeF(size) * scale).toSize(); };
        session.startProgram();
        ASSERT_TRUE(session.mainWindowBecomes(scaled(controlsSize)));
        session.clickMain(static_cast<int>(recordButton.x() * scale),
                          static_cast<int>(recordButton.y() * scale));
        ASSERT_TRUE(eventually([&session] {
            return session.window(QStringLiteral("Select area")).size() == QSize(1280, 900);
        }));
        session.xdo({"mousemove", "400", "300", "mousedown", "1"});
        session.xdo({"mousemove", "500", "350"});
        session.xdo({"mousemove", "701", "501"});
        session.xdo({"mouseup", "1"});
        ASSERT_TRUE(session.mainWindowBecomes(scaled(recordingSize)));
        session.clickMain(static_cast<int>(stopButton.x() * scale),
                          static_cast<int>(stopButton.y() * scale));
        ASSERT_TRUE(eventually([&session] {
            const auto folder = session.recordings();
            return fs::exists(folder) &&
                   fs::exists(fs::directory_iterator(folder)->path() / "metadata.json");
        }));
        const auto recorded = recordedIn(session.recordings());
        EXPECT_EQ(recorded.metadata.captureRect, expected) << textResolution;
        EXPECT_EQ(movieSize(recorded), (model::Size{300, 200})) << textResolution;
    }
}

TEST(EndToEnd, WithoutADisplayItSaysSoInOneLine) {
    QProcess program;
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto* name : {"WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "DISPLAY"})
        environment.remove(QString::fromLatin1(name));
    program.setProcessEnvironment(environment);
    for (const auto* display : {"", ":4711"}) {
        environment.insert(QStringLiteral("DISPLAY"), QString::fromLatin1(display));
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(VANTRO_PROGRAM), QStringList());
        ASSERT_TRUE(program.waitForFinished());
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(program.exitCode(), 1);
        const auto said = program.readAllStandardError();
        EXPECT_THAT(said.toStdString(), testing::StartsWith("vantro: no window can be opened: "));
        EXPECT_EQ(said.count('\n'), 1) << said.toStdString();
    }
}

} // namespace
} // namespace vantro::window
