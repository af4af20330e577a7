#include "app/files/ProjectStores.h"
#include "export/RecordingFixture.h"
#include "media/Asset.h"
#include "model/Json.h"
#include "support/Eventually.h"
#include "support/SessionBus.h"
#include "support/XorgDesk.h"
#include "window/DesktopSession.h"

#include <csignal>
#include <fstream>
#include <set>
#include <tuple>

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
constexpr int sidebarWidth = 272;
constexpr QPoint stageMiddle((980 - sidebarWidth) / 2, 284);

/// The one recording that was made.
struct Recorded {
    fs::path folder;
    model::RecordingMetadata metadata;
    media::Asset movie;
};

Recorded recordedIn(const fs::path& recordings) {
    const fs::path folder = *fs::directory_iterator(recordings);
    EXPECT_TRUE(eventually([&] { return fs::exists(folder / "metadata.json"); }));
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
    /// The program, with the project in its editor.
    void open(const model::Project& project) {
        const auto package = session.home() / "demo.vantro";
        app::files::saveProject(package, project, true);
        session.startProgram({QString::fromStdString(package.string())});
        ASSERT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
    }
    /// The second of the recording whose color the editor shows; negative for none.
    int shownSecond() {
        const auto place = session.mainWindow().topLeft() + stageMiddle;
        const auto shown = session.picture(QStringLiteral("preview")).pixelColor(place);
        for (int second = 0; second < 4; ++second)
            if (test::distance({shown.red(), shown.green(), shown.blue()},
                               test::colorOfSecond(second)) < 10)
                return second;
        return -1;
    }
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

TEST_F(EndToEndTest, ChangesThatWereNotSavedComeBackAfterTheProgramWasKilled) {
    const auto package = session.home() / "demo.vantro";
    test::writeColorClock(session.home() / "source.mov", 320, 180, 10, 2);
    open(test::plainProject(session.home() / "source.mov", 10));
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
    EXPECT_GT(session.mainWindow().x(), 900) << "the window steps aside";
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
    const auto recorded = recordedIn(session.recordings());
    const double points = GetParam() < 2 * 96 ? 1 : 2; // only whole ones, in pixels
    EXPECT_EQ(recorded.metadata.captureRect,
              (model::Rect{400 / points, 300 / points, 300 / points, 200 / points}));
    EXPECT_EQ(movieSize(recorded), (model::Size{300, 200}));
}

INSTANTIATE_TEST_SUITE_P(TextResolutions, ScaledDesktopTest, testing::Values(144, 192));

TEST_F(EndToEndTest, KeysFromAnywhereAndOtherProgramsStartMarkPauseAndStopARecording) {
    const test::SessionBus bus;
    session.setVariable(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                        QString::fromStdString(bus.address()));
    fs::create_directories(session.home() / ".config/vantro");
    std::ofstream(session.home() / ".config/vantro/vantro.ini")
        << "[globalKeys]\nareSetUp=true\ntoggle=Ctrl+Alt+P\n";
    session.startOther(QStringLiteral("xterm"), xterm);
    ASSERT_TRUE(eventually([this] { return isShown(notes); }));
    start();
    click(screenMode);
    session.xdo({"mousemove", "700", "600"});
    const auto tell = [&](const char* command) { return run({QString::fromLatin1(command)}); };
    EXPECT_EQ(tell("mark"), 1);
    EXPECT_EQ(tell("toggle"), 0);
    ASSERT_TRUE(session.mainWindowBecomes(recordingSize)) << errors();
    session.xdo({"search", "--name", "^Notes$", "windowfocus", "--sync"});
    ASSERT_TRUE(eventually([&] { // once capture runs
        session.xdo({"key", "ctrl+alt+z"});
        return test::contentOf(recordedFolder() / "recording.mov.cursor").contains("\nleft ");
    }));
    EXPECT_EQ(tell("pause"), 0);
    EXPECT_TRUE(eventually([&] { return tell("mark") == 1; })) << "paused";
    EXPECT_EQ(tell("pause"), 0);
    EXPECT_TRUE(eventually([&] { return tell("mark") == 0; })) << "resumed";
    session.xdo({"key", "ctrl+alt+p"});
    EXPECT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
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

TEST_F(EndToEndTest, WhatWasCutIsNeverShown) {
    const auto movie = session.home() / "clock.mov";
    test::writeColorClock(movie, 640, 360, 30, 8);
    auto project = test::plainProject(movie, 30);
    // The first and the fourth second.
    project.edit.segments = {{{.startFraction = 0, .endFraction = 1.0 / 8, .speed = 0.5},
                              {.startFraction = 3.0 / 8, .endFraction = 4.0 / 8, .speed = 0.5}}};
    open(project);
    ASSERT_TRUE(eventually([this] { return shownSecond() == 0; })) << errors();
    session.xdo({"key", "space"});
    std::set<int> shown;
    int changes = 0;
    EXPECT_TRUE(eventually([&, last = 0]() mutable {
        const int second = shownSecond();
        changes += second != last ? 1 : 0;
        last = second;
        shown.insert(second);
        return changes >= 3; // over the gap, back to the start, and over it again
    }));
    EXPECT_EQ(shown, (std::set{0, 3}));
}

TEST_F(EndToEndTest, PlayCommandEndsWithTheFilmAndTellsWhatWasShown) {
    const auto movie = session.home() / "clock.mov";
    test::writeColorClock(movie, 640, 360, 30, 2);
    const auto package = session.home() / "shown.vantro";
    app::files::saveProject(package, test::plainProject(movie, 30), true);
    const auto path = QString::fromStdString(package.string());
    session.startProgram({"play", path, "--json"});
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(session.program().exitCode(), 0);
    const auto told =
        nlohmann::json::parse(session.program().readAllStandardOutput().toStdString());
    const int all = told["shown"].get<int>() + told["dropped"].get<int>();
    EXPECT_NEAR(all, 60, 6);
    EXPECT_NEAR(told["seconds"].get<double>(), 2, 0.5);

    std::filesystem::remove(package / "recording.mov");
    session.startProgram({"play", path});
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(session.program().exitCode(), 1);
    EXPECT_NE(errors().find("recording.mov: no such file"), std::string::npos);
}

/// Pixels of the recording that are pixels of the screen, whatever the desktop's scaling.
class ScaledPreviewTest : public testing::TestWithParam<int> {};

TEST_P(ScaledPreviewTest, ASmallRecordingIsShownPixelByPixel) {
    test::DesktopSession session(GetParam());
    const auto movie = session.home() / "stripes.mov";
    test::writeMovie(movie, 320, 180, 10, 10, [](media::PixelBuffer& bgra, int) {
        for (int y = 0; y < 180; ++y)
            for (int x = 0; x < 320; ++x)
                for (int channel = 0; channel < 4; ++channel)
                    bgra.mutableRow(0, y)[4 * x + channel] = x % 2 == 0 ? 30 : 220;
    });
    const auto package = session.home() / "stripes.vantro";
    app::files::saveProject(package, test::plainProject(movie, 10), true);
    session.startProgram({QString::fromStdString(package.string())});
    const auto isSharp = [&] {
        const auto window = session.mainWindow();
        if (window.width() < 500)
            return false;
        const auto desktop = session.picture(QStringLiteral("preview-sharp"));
        const int panelLessToolbar = 56 * GetParam() / 96;
        const int halfSidebar = sidebarWidth / 2 * GetParam() / 96;
        const auto middle = window.center() - QPoint(halfSidebar, panelLessToolbar);
        for (int x = -100; x < 100; ++x) {
            const int here = desktop.pixelColor(middle + QPoint(x, 0)).green();
            const int next = desktop.pixelColor(middle + QPoint(x + 1, 0)).green();
            if (std::abs(here - next) < 120)
                return false;
        }
        return true;
    };
    EXPECT_TRUE(eventually(isSharp));
}

INSTANTIATE_TEST_SUITE_P(TextResolutions, ScaledPreviewTest, testing::Values(96, 120, 144, 192));

} // namespace
} // namespace vantro::window
