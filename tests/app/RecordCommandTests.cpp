// `vantro record` run as a user runs it, on a private X server; the projects it makes looked into.
#include "app/ProjectPackage.h"
#include "capture/Colors.h"
#include "capture/MovieFrames.h"
#include "export/RecordingFixture.h"
#include "support/Pointer.h"
#include "support/TestWindow.h"

#include <csignal>
#include <cstdio>
#include <functional>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

namespace vantro {
namespace {

using test::hasColor;
using test::TestWindow;
using test::XServer;
using ::testing::HasSubstr;
using vantro::testing::TemporaryFolder;

constexpr std::uint32_t red = 0xd02010;
constexpr std::uint32_t green = 0x20b040;
constexpr std::uint32_t blue = 0x1030e0;
constexpr double codingTolerance = 8; // of 255 levels: the movie is not lossless

struct Result {
    int exitCode = -1;
    std::string output; ///< standard output and error together
};

class RecordCommand : public ::testing::Test {
  protected:
    /// Runs the program to its end; `onFirstFrame` is called as soon as it records.
    Result record(const std::string& arguments, const std::function<void()>& onFirstFrame = {}) {
        const auto command = fmt::format(
            "DISPLAY={} TMPDIR='{}' exec '{}' record --verbose --output '{}' {} 2>&1",
            server.display(), folder.path().string(), VANTRO_PROGRAM, project.string(), arguments);
        FILE* pipe = ::popen(command.c_str(), "r");
        Result result;
        char line[4096];
        while (std::fgets(line, sizeof line, pipe) != nullptr) {
            result.output += line;
            if (onFirstFrame && std::string_view(line).contains("First frame"))
                onFirstFrame();
        }
        const int status = ::pclose(pipe);
        result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
        return result;
    }

    std::vector<VideoFrame> frames() const { return test::framesOf(project / "recording.mov"); }

    const XServer server;
    TemporaryFolder folder;
    std::filesystem::path project = folder / "made.vantro";
};

TEST_F(RecordCommand, RecordsAnAreaWithItsClicksAndSumsUp) {
    TestWindow window(server, {0, 0, 640, 480}, red);
    window.fill({100, 50, 60, 40}, green);
    test::Pointer hand(server);
    const auto result = record("--mode area --rect 100,50,301,201 --seconds 0.7", [&] {
        hand.moveTo(130, 70);
        hand.click(1);
    });
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, HasSubstr("0 dropped, 1 clicks"));
    EXPECT_THAT(result.output, HasSubstr("% CPU"));
    const auto first = frames().at(0).pixels;
    EXPECT_EQ(first->width(), 300);
    EXPECT_EQ(first->height(), 200);
    EXPECT_TRUE(hasColor(*first, 2, 2, green, codingTolerance));
    EXPECT_TRUE(hasColor(*first, 56, 36, green, codingTolerance));
    EXPECT_TRUE(hasColor(*first, 64, 20, red, codingTolerance));
    const auto click = readProjectFile(project).metadata.clickEvents.at(0);
    EXPECT_EQ((Point{click.x, click.y}), (Point{30, 20}));
}

TEST_F(RecordCommand, ClipsAnAreaThatReachesBeyondTheScreen) {
    TestWindow window(server, {0, 0, 640, 480}, blue);
    const auto result = record("--mode area --rect=-50,400,150,300 --seconds 0.3");
    ASSERT_EQ(result.exitCode, 0) << result.output;
    const auto first = frames().at(0).pixels;
    EXPECT_EQ(first->width(), 100);
    EXPECT_EQ(first->height(), 80);
    EXPECT_TRUE(hasColor(*first, 99, 79, blue, codingTolerance));
}

TEST_F(RecordCommand, RecordsACoveredWindowUntilItIsClosed) {
    TestWindow window(server, {300, 100, 200, 120}, red, {.title = "Quarterly Report"});
    const TestWindow cover(server, {0, 0, 640, 480}, blue);
    const auto result =
        record("--mode window --window-title 'quarterly rep'", [&] { window.close(); });
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, HasSubstr("the window was closed; the recording holds what it"));
    const auto first = frames().at(0).pixels;
    EXPECT_EQ(first->width(), 200);
    EXPECT_TRUE(hasColor(*first, 100, 60, red, codingTolerance));
    EXPECT_EQ(readProjectFile(project).metadata.captureRect, (Rect{300, 100, 200, 120}));
}

TEST_F(RecordCommand, WaitsBeforeItStarts) {
    const TestWindow window(server, {300, 100, 200, 120}, red, {.title = "Report"});
    const auto before = hostNow();
    const auto result = record(
        fmt::format("--mode window --window {} --delay 0.6 --seconds 0.2 --json", window.id()));
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_GT(inSeconds(hostNow() - before), 0.8);
    EXPECT_LT(readProjectFile(project).metadata.endTime, 0.5);
    EXPECT_THAT(result.output, HasSubstr("\"cpuPercent\":"));
}

TEST_F(RecordCommand, SaysWhatIsWrongWithWhatIsSelected) {
    const struct {
        const char* arguments;
        int exitCode;
        const char* message;
    } cases[]{
        {"--mode area --rect 0,0,0,100", 1, "Invalid screen area selected."},
        {"--mode area --rect 700,0,100,100", 1, "Invalid screen area selected."},
        {"--mode area", 1, "Invalid screen area selected."},
        {"--mode area --rect 0,0,100", 2, "X,Y,W,H"},
        {"--mode area --rect 0,0,nan,100", 2, "X,Y,W,H"},
        {"--mode window", 1, "No window selected"},
        {"--mode window --window 12345", 1, "No window selected"},
        {"--mode window --window-title nothing", 1, "No window selected"},
        {"--display 1", 1, "Display not found"},
    };
    for (const auto& [arguments, exitCode, message] : cases) {
        const auto result = record(std::string(arguments) + " --seconds 0.2");
        EXPECT_EQ(result.exitCode, exitCode) << arguments;
        EXPECT_THAT(result.output, HasSubstr(message)) << arguments;
        EXPECT_FALSE(std::filesystem::exists(project)) << arguments;
    }
}

} // namespace
} // namespace vantro
