#include "app/files/ProjectStores.h"
#include "export/RecordingFixture.h"
#include "support/Eventually.h"
#include "window/DesktopSession.h"

#include <set>

#include <gtest/gtest.h>

namespace vantro::window {
namespace {

using test::colorOfSecond;
using test::eventually;

constexpr QSize editorSize(980, 680);
constexpr int sidebarWidth = 272;
constexpr QPoint stageMiddle((980 - sidebarWidth) / 2, 284);
constexpr int rulerY = 530; // of the main window, as all that follows
constexpr int rulerLeft = 16;
constexpr int rulerRight = 964;
constexpr QPoint playButton(490, 655);
constexpr QPoint backButton(440, 655);
constexpr QPoint forwardButton(540, 655);

/// The program on a desktop, its editor showing a recording whose color tells the second.
class PreviewEndToEndTest : public testing::Test {
  protected:
    void open(int seconds, std::vector<model::TimelineSegment> segments = {}) {
        const auto movie = session.home() / "clock.mov";
        test::writeColorClock(movie, 640, 360, 30, seconds);
        auto project = test::plainProject(movie, 30);
        if (!segments.empty())
            project.edit.segments = std::move(segments);
        open(project);
        ASSERT_TRUE(shows(0)) << errors();
    }
    void open(const model::Project& project) {
        const auto package = session.home() / "shown.vantro";
        app::files::saveProject(package, project, true);
        session.startProgram({QString::fromStdString(package.string())});
        ASSERT_TRUE(session.mainWindowBecomes(editorSize)) << errors();
    }

    /// The second of the recording whose color the desktop shows; negative for none.
    int shownSecond() {
        const auto place = session.mainWindow().topLeft() + stageMiddle;
        const auto shown = session.picture(QStringLiteral("preview")).pixelColor(place);
        for (int second = 0; second < 4; ++second)
            if (test::distance({shown.red(), shown.green(), shown.blue()}, colorOfSecond(second)) <
                10)
                return second;
        return -1;
    }
    bool shows(int second) {
        return eventually([&] { return shownSecond() == second; });
    }
    void key(const char* name) { session.xdo({"key", QString::fromLatin1(name)}); }
    void click(QPoint at) { session.clickMain(at.x(), at.y()); }
    void movePointer(double fraction) {
        const auto at = session.mainWindow().topLeft() +
                        QPoint(rulerLeft + qRound((rulerRight - rulerLeft) * fraction), rulerY);
        session.xdo({"mousemove", QString::number(at.x()), QString::number(at.y())});
    }
    std::string errors() { return session.program().readAllStandardError().toStdString(); }

    test::DesktopSession session;
};

TEST_F(PreviewEndToEndTest, PlaysPausesSkipsScrubsAndStartsOver) {
    open(4);
    key("space");
    EXPECT_TRUE(shows(1));
    EXPECT_TRUE(shows(3));
    EXPECT_TRUE(shows(0)) << "it starts over";
    EXPECT_TRUE(shows(1));
    click(playButton);
    const auto paused = shownSecond();
    session.picture(QStringLiteral("preview-paused"));
    EXPECT_EQ(shownSecond(), paused);

    click(forwardButton);
    EXPECT_TRUE(shows(3));
    click(backButton);
    EXPECT_TRUE(shows(0));

    movePointer(0);
    session.xdo({"mousedown", "1"});
    movePointer(0.3);
    EXPECT_TRUE(shows(1));
    movePointer(0.6);
    EXPECT_TRUE(shows(2)) << "while the button is down";
    session.xdo({"mouseup", "1"});
    EXPECT_TRUE(shows(2));
    key("space");
    EXPECT_TRUE(shows(3)) << "it plays on from there";
}

TEST_F(PreviewEndToEndTest, WhatWasCutIsNeverShown) {
    // The first and the fourth second of eight.
    open(8, {{.startFraction = 0, .endFraction = 1.0 / 8, .speed = 0.5},
             {.startFraction = 3.0 / 8, .endFraction = 4.0 / 8, .speed = 0.5}});
    key("space");
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

TEST_F(PreviewEndToEndTest, PlayCommandEndsWithTheFilmAndTellsWhatWasShown) {
    const auto movie = session.home() / "clock.mov";
    test::writeColorClock(movie, 640, 360, 30, 2);
    const auto package = session.home() / "shown.vantro";
    app::files::saveProject(package, test::plainProject(movie, 30), true);
    const auto path = QString::fromStdString(package.string());
    session.startProgram({"play", path, "--json"});
    ASSERT_TRUE(eventually([this] { return session.program().waitForFinished(1); }));
    EXPECT_EQ(session.program().exitCode(), 0);
    const auto told =
        nlohmann::json::parse(session.program().readAllStandardOutput().toStdString());
    const int all = told["shown"].get<int>() + told["dropped"].get<int>();
    EXPECT_NEAR(all, 60, 6);
    EXPECT_NEAR(told["seconds"].get<double>(), 2, 0.5);

    std::filesystem::remove(package / "recording.mov");
    session.startProgram({"play", path});
    ASSERT_TRUE(eventually([this] { return session.program().waitForFinished(1); }));
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
