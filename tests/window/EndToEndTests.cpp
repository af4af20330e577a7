#include "app/files/ProjectStores.h"
#include "export/RecordingFixture.h"
#include "media/Asset.h"
#include "model/Json.h"
#include "support/Eventually.h"
#include "support/SessionBus.h"
#include "support/TemporaryFolder.h"
#include "support/TestWindow.h"
#include "support/XorgDesk.h"
#include "window/DesktopSession.h"

#include <csignal>
#include <fstream>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::window {
namespace {

namespace fs = std::filesystem;
using test::eventually;

constexpr QSize controlsSize(340, 120);
constexpr QSize controlsWithProjectSize(340, 200);
constexpr QSize recordingSize(254, 54);
constexpr QSize editorSize(980, 680);
constexpr QPoint recordButton(170, 82);
constexpr QPoint nameField(100, 26);
constexpr QPoint stopButton(214, 27);
constexpr QPoint screenMode(60, 28);
constexpr QPoint windowMode(170, 28);
constexpr QSize pickerSize(400, 440);

/// The one recording that was made.
struct Recorded {
    fs::path folder;
    model::RecordingMetadata metadata;
    media::Asset movie;
};

Recorded recordedIn(const fs::path& recordings) {
    const fs::path folder = *fs::directory_iterator(recordings);
    return {.folder = folder,
            .metadata = model::decodeMetadata(test::contentOf(folder / "metadata.json")),
            .movie = media::Asset::open(folder / "recording.mov")};
}

model::Size movieSize(const Recorded& recorded) {
    return recorded.movie.tracks(media::MediaType::video).at(0).naturalSize;
}

class EndToEndTest : public testing::Test {
  protected:
    explicit EndToEndTest(int textResolution = 96)
        : scale(textResolution / 96.0), session(textResolution) {}

    void start() {
        session.startProgram();
        ASSERT_TRUE(session.mainWindowBecomes(scaled(controlsSize))) << errors();
    }
    void recordTheScreen() {
        click(screenMode);
        click(recordButton);
        ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    }
    /// Moves the pointer about, as somebody does who shows something, and stops.
    Recorded stopped() {
        useTheScreen();
        click(stopButton);
        EXPECT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
        return recordedIn(session.recordings());
    }
    void useTheScreen() {
        for (int step = 0; step < 30; ++step)
            session.xdo({"mousemove", QString::number(500 + 5 * step), "450"});
    }
    QSize scaled(QSize size) const { return (QSizeF(size) * scale).toSize(); }
    void click(QPoint at) {
        const auto pixel = QPointF(at) * scale;
        session.clickMain(static_cast<int>(pixel.x()), static_cast<int>(pixel.y()));
    }
    fs::path recordedFolder() const { return *fs::directory_iterator(session.recordings()); }
    bool isShown(const QString& title) { return !session.window(title).isNull(); }
    bool hasEnded() {
        return eventually([this] { return session.program().waitForFinished(1); });
    }
    /// Another start of the program; its exit code.
    int run(const QStringList& arguments) {
        QProcess other;
        other.setProcessEnvironment(session.environment());
        other.start(session.program().program(), arguments);
        other.waitForFinished();
        return other.exitCode();
    }
    std::string errors() { return session.program().readAllStandardError().toStdString(); }

    const QString overlay = QStringLiteral("Select area");
    const QString notes = QStringLiteral("Notes"); ///< title of a window of another program
    const QStringList xterm{"-title", notes, "-geometry", "60x20+500+300", "-e", "sleep", "600"};
    const double scale;
    test::DesktopSession session;
};

/// 301 × 201 pixels from a corner.
void beginDrag(const test::DesktopSession& session, QPoint from) {
    const auto move = [&](int x, int y) {
        session.xdo({"mousemove", QString::number(from.x() + x), QString::number(from.y() + y)});
    };
    move(0, 0);
    session.xdo({"mousedown", "1"});
    move(100, 50);
    move(301, 201);
}

TEST_F(EndToEndTest, TwoClicksRecordTheScreenAndTheEditorFollows) {
    const test::TestWindow shown(session.server(), {600, 500, 200, 200}, 0x00ff00);
    start();
    recordTheScreen();
    EXPECT_GT(session.mainWindow().x(), 900) << "the window steps aside";
    session.xdo({"mousemove", "700", "600", "click", "1"});
    const auto recorded = stopped();
    EXPECT_EQ(movieSize(recorded), (model::Size{1280, 900}));
    EXPECT_EQ(recorded.metadata.captureRect, (model::Rect{0, 0, 1280, 900}));
    EXPECT_GT(recorded.movie.duration().seconds(), 0.1);
    const auto& clicks = recorded.metadata.clickEvents;
    ASSERT_GE(clicks.size(), 1U);
    EXPECT_NEAR(clicks[0].x, 700, 1);
    EXPECT_NEAR(clicks[0].y, 600, 1);
}

TEST_F(EndToEndTest, KeysRecordStopSaveAndBeginAnew) {
    start();
    click(screenMode);
    session.xdo({"key", "ctrl+r"});
    ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    useTheScreen();
    session.xdo({"key", "ctrl+s"});
    ASSERT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
    session.xdo({"key", "ctrl+s"});
    ASSERT_TRUE(eventually([this] { return isShown(QStringLiteral("Save Project.*")); }));
    const auto package = session.home() / "tour.vantro";
    session.xdo({"key", "ctrl+a"});
    session.xdo({"type", QString::fromStdString(package.string())});
    session.xdo({"key", "Return"});
    ASSERT_TRUE(eventually([&] { return fs::exists(package / "project.json"); })) << errors();
    EXPECT_FALSE(
        media::Asset::open(package / "recording.mov").tracks(media::MediaType::video).empty());

    session.xdo({"key", "ctrl+n"});
    EXPECT_TRUE(session.mainWindowBecomes(controlsWithProjectSize));
}

TEST_F(EndToEndTest, ChangesThatWereNotSavedComeBackAfterTheProgramWasKilled) {
    const auto package = session.home() / "demo.vantro";
    test::writeColorClock(session.home() / "source.mov", 320, 180, 10, 2);
    app::files::saveProject(package, test::plainProject(session.home() / "source.mov", 10), false);
    session.startProgram({QString::fromStdString(package.string())});
    ASSERT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
    click(nameField);
    session.xdo({"key", "ctrl+a"});
    session.xdo({"type", "Renamed"});
    const auto journals = session.home() / ".local/state/vantro/edits";
    const auto isKept = [&] {
        std::error_code none;
        for (const auto& journal : fs::directory_iterator(journals, none))
            if (test::contentOf(journal.path() / "edit").contains("\"Renamed\""))
                return true;
        return false;
    };
    ASSERT_TRUE(eventually(isKept)) << errors();
    session.program().kill();
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(app::files::readProjectFile(package).name, "plain");

    session.startProgram();
    ASSERT_TRUE(eventually([this] {
        return session.window(QStringLiteral("Vantro")).width() > controlsWithProjectSize.width();
    })) << "the changes are offered";
    session.xdo({"key", "Return"});
    ASSERT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
    session.xdo({"key", "ctrl+s"});
    EXPECT_TRUE(eventually([&] { return app::files::readProjectFile(package).name == "Renamed"; }));
    EXPECT_TRUE(eventually([&] { return fs::is_empty(journals); }));
}

TEST_F(EndToEndTest, AWindowChosenFromTheListIsRecordedWithItsFrame) {
    session.startOther(QStringLiteral("xterm"), xterm);
    ASSERT_TRUE(eventually([this] { return isShown(notes); }));
    const auto inner = session.window(notes);
    start();
    click(windowMode);
    click(recordButton);
    ASSERT_TRUE(session.mainWindowBecomes(pickerSize)) << errors();
    // A row can be chosen once the list has come, and a click on none does nothing.
    ASSERT_TRUE(eventually([this] {
        click({200, 80});
        return session.mainWindow().size() == recordingSize;
    })) << errors();
    const auto recorded = stopped();
    const auto& rect = recorded.metadata.captureRect;
    EXPECT_LE(rect.x, inner.x());
    EXPECT_LT(rect.y, inner.y()) << "the title bar belongs to it";
    EXPECT_GT(rect.height, inner.height());
    EXPECT_NEAR(movieSize(recorded).width, rect.width, 1);
}

TEST_F(EndToEndTest, EscapeClosesTheOverlayAlsoWhenAnotherWindowHasTheFocus) {
    session.startOther(QStringLiteral("xterm"), xterm);
    ASSERT_TRUE(eventually([this] { return isShown(notes); }));
    start();
    click(recordButton);
    ASSERT_TRUE(eventually([this] { return isShown(overlay); })) << errors();
    beginDrag(session, {400, 300});
    session.xdo({"search", "--name", "^Notes$", "windowfocus", "--sync"});
    session.xdo({"key", "Escape"});
    session.xdo({"mouseup", "1"});
    EXPECT_TRUE(eventually([this] { return !isShown(overlay); }));
    EXPECT_TRUE(session.mainWindowBecomes(controlsSize));
    EXPECT_FALSE(fs::exists(session.recordings()));
}

TEST_F(EndToEndTest, KeysFromAnywhereStartMarkAndStopWhileAnotherProgramHasTheKeyboard) {
    fs::create_directories(session.home() / ".config/vantro");
    std::ofstream(session.home() / ".config/vantro/vantro.ini")
        << "[globalKeys]\nareSetUp=true\ntoggle=Ctrl+Alt+P\n";
    session.startOther(QStringLiteral("xterm"), xterm);
    ASSERT_TRUE(eventually([this] { return isShown(notes); }));
    start();
    click(screenMode);
    session.xdo({"search", "--name", "^Notes$", "windowfocus", "--sync"});
    session.xdo({"mousemove", "700", "600", "key", "ctrl+alt+p"});
    ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    session.xdo({"search", "--name", "^Notes$", "windowfocus", "--sync"});
    ASSERT_TRUE(eventually([&] { // once capture runs
        session.xdo({"key", "ctrl+alt+z"});
        return test::contentOf(recordedFolder() / "recording.mov.cursor").contains("\nleft ");
    }));
    session.xdo({"key", "ctrl+alt+p"});
    EXPECT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
    EXPECT_EQ(recordedIn(session.recordings()).metadata.clickEvents.at(0).x, 700);
}

TEST_F(EndToEndTest, BeingToldToEndFinishesTheRecording) {
    start();
    recordTheScreen();
    useTheScreen();
    ::kill(static_cast<pid_t>(session.program().processId()), SIGTERM);
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(session.program().exitCode(), 0);
    EXPECT_EQ(movieSize(recordedIn(session.recordings())), (model::Size{1280, 900}));
}

TEST_F(EndToEndTest, AKilledRecordingIsRecoveredAtTheNextStart) {
    start();
    recordTheScreen();
    session.xdo({"mousemove", "700", "600", "click", "1"});
    useTheScreen();
    session.program().kill();
    ASSERT_TRUE(hasEnded());

    session.startProgram();
    EXPECT_TRUE(eventually([this] {
        return session.mainWindow().height() > controlsSize.height();
    })) << "the recording is offered";
    session.xdo({"key", "Return"});
    ASSERT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
    const auto recorded = recordedIn(session.recordings());
    EXPECT_EQ(movieSize(recorded), (model::Size{1280, 900}));
    EXPECT_NEAR(recorded.movie.duration().seconds(), recorded.metadata.endTime, 0.1);
    ASSERT_EQ(recorded.metadata.clickEvents.size(), 1U);
    EXPECT_EQ(recorded.metadata.clickEvents[0].x, 700);
}

TEST_F(EndToEndTest, AnAreaIsDraggedOutOnAnyDisplayWithoutOurWindowInSight) {
    // The server's only output goes to the first, so that it is no display of its own.
    for (const auto& [name, place, output] : {std::tuple{"*left", "1000/100x900/100+0+0", "screen"},
                                              {"right", "280/100x900/100+1000+0", "none"}})
        test::runXrandr(session.server().display(), {"--setmonitor", name, place, output});
    session.startOther(QStringLiteral("xterm"), {"-title", notes, "-bg", "#00ff00", "-geometry",
                                                 "300x100+0+0", "-e", "sleep", "600"});
    ASSERT_TRUE(eventually([this] { return isShown(notes); }));
    start();
    const auto ours = session.mainWindow().center();
    EXPECT_NE(session.picture(QStringLiteral("two-displays")).pixelColor(ours), QColor(0, 255, 0));
    click(recordButton);
    ASSERT_TRUE(eventually([this] {
        return session.xdoOutput({"search", "--onlyvisible", "--name", "^Select area$"}).size() ==
               2;
    })) << errors();
    beginDrag(session, {1010, 300});
    const auto dimmed = session.picture(QStringLiteral("two-displays-drag")).pixelColor(ours);
    EXPECT_NEAR(dimmed.green(), 0.7 * 255, 4);
    EXPECT_NEAR(dimmed.red(), 0, 4);
    session.xdo({"mousemove", "1260", "500", "mouseup", "1"});
    ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    const auto recorded = stopped();
    EXPECT_EQ(recorded.metadata.captureRect, (model::Rect{1010, 300, 250, 200}));
    EXPECT_EQ(movieSize(recorded), (model::Size{250, 200}));
}

class ScaledDesktopTest : public EndToEndTest, public testing::WithParamInterface<int> {
  protected:
    ScaledDesktopTest() : EndToEndTest(GetParam()) {}
};

TEST_P(ScaledDesktopTest, ADraggedAreaIsRecordedAtItsEvenSize) {
    start();
    click(recordButton);
    ASSERT_TRUE(eventually([this] { return session.window(overlay).size() == QSize(1280, 900); }));
    beginDrag(session, {400, 300});
    session.xdo({"mouseup", "1"});
    ASSERT_TRUE(session.mainWindowBecomes(scaled(recordingSize))) << errors();
    click(stopButton);
    ASSERT_TRUE(eventually(
        [this] { return session.mainWindow().height() > scaled(recordingSize).height(); }));
    const auto recorded = recordedIn(session.recordings());
    const double points = GetParam() < 2 * 96 ? 1 : 2; // only whole ones, in pixels
    EXPECT_EQ(recorded.metadata.captureRect,
              (model::Rect{400 / points, 300 / points, 300 / points, 200 / points}));
    EXPECT_EQ(movieSize(recorded), (model::Size{300, 200}));
}

INSTANTIATE_TEST_SUITE_P(TextResolutions, ScaledDesktopTest, testing::Values(144, 192));

TEST_F(EndToEndTest, OtherProgramsStartMarkAndStopARecording) {
    const test::SessionBus bus;
    session.setVariable(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                        QString::fromStdString(bus.address()));
    start();
    click(screenMode);
    session.xdo({"mousemove", "700", "600"});
    const auto tell = [&](const char* command) { return run({QString::fromLatin1(command)}); };
    EXPECT_EQ(tell("mark"), 1);
    EXPECT_EQ(tell("toggle"), 0);
    ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    ASSERT_TRUE(eventually([&] { // once capture runs
        return tell("mark") == 0 &&
               test::contentOf(recordedFolder() / "recording.mov.cursor").contains("\nleft ");
    }));
    EXPECT_EQ(tell("pause"), 0);
    EXPECT_TRUE(eventually([&] { return tell("mark") == 1; })) << "paused";
    EXPECT_EQ(tell("pause"), 0);
    EXPECT_TRUE(eventually([&] { return tell("mark") == 0; })) << "resumed";
    EXPECT_EQ(tell("toggle"), 0);
    const auto recorded = recordedIn(session.recordings());
    const auto& mark = recorded.metadata.clickEvents.at(0);
    EXPECT_EQ((model::Point{mark.x, mark.y}), (model::Point{700, 600}));
    EXPECT_EQ(tell("stop"), 1) << "it is over";
}

TEST_F(EndToEndTest, ASecondStartOpensItsFileInTheFirstWindowWhichOutlivesTheBus) {
    auto bus = std::make_optional<test::SessionBus>();
    session.setVariable(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                        QString::fromStdString(bus->address()));
    start();
    const auto home = QString::fromStdString(session.home().string());
    const auto file = home + QStringLiteral("/größe #1 100%.vantro");
    ASSERT_EQ(run({QStringLiteral("record"), QStringLiteral("--seconds=1"),
                   QStringLiteral("--output"), home + QStringLiteral("/film.vantro")}),
              0);
    ASSERT_EQ(run({QStringLiteral("pack"), home + QStringLiteral("/film.vantro"),
                   QStringLiteral("--output"), file}),
              0);
    EXPECT_EQ(run({file}), 0);
    ASSERT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
    bus.reset();
    session.xdo({"key", "ctrl+q"});
    EXPECT_TRUE(session.program().waitForFinished());
    EXPECT_EQ(session.program().exitStatus(), QProcess::NormalExit) << errors();
    EXPECT_EQ(session.program().exitCode(), 0);
}

} // namespace
} // namespace vantro::window
