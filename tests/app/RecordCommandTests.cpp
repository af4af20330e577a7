// `vantro record` run as a user runs it, on a private X server; the projects it makes looked into.
#include "app/cli/RecordingWatch.h"
#include "app/files/ProjectPackage.h"
#include "capture/Colors.h"
#include "capture/MovieFrames.h"
#include "export/RecordingFixture.h"
#include "support/Pointer.h"
#include "support/TestWindow.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <stdexcept>
#include <thread>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantro::app {
namespace {

using test::hasColor;
using test::TestWindow;
using test::XServer;
using ::testing::HasSubstr;
using vantro::test::TemporaryFolder;
using namespace test::colors;

constexpr double codingTolerance = 8; // of 255 levels: the movie is not lossless

struct Result {
    int exitCode = -1;
    std::string output; ///< standard output and error together
};

class RecordCommand : public ::testing::Test {
  protected:
    /// Runs the program to its end; `onFirstFrame` is called as soon as it records. The shell does
    /// `before` first.
    Result record(const std::string& arguments, const std::function<void()>& onFirstFrame = {},
                  const std::string& before = "") {
        const auto command = fmt::format(
            "{} DISPLAY={} TMPDIR='{}' exec '{}' record --verbose --output '{}' {} 2>&1", before,
            server.display(), folder.path().string(), VANTRO_PROGRAM, project.string(), arguments);
        FILE* pipe = ::popen(command.c_str(), "r");
        if (pipe == nullptr)
            throw std::runtime_error("no shell can be started");
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

    std::vector<media::VideoFrame> frames() const {
        return test::framesOf(project / "recording.mov");
    }

    test::XServer server;
    test::TemporaryFolder folder;
    std::filesystem::path project = folder / "made.vantro";
};

TEST_F(RecordCommand, IsFinishedWhenItsTerminalIsClosed) {
    const TestWindow shown(server, {0, 0, 640, 480}, red);
    int terminal = -1;
    const auto process = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (process == 0) {
        ::setenv("DISPLAY", server.display().c_str(), 1);
        ::setenv("TMPDIR", folder.path().c_str(), 1);
        ::execl(VANTRO_PROGRAM, "vantro", "record", "--output", project.c_str(), nullptr);
        ::_exit(EXIT_FAILURE);
    }
    std::string said;
    char chunk[256];
    while (!said.contains(" 1 frames")) {
        const auto count = ::read(terminal, chunk, sizeof chunk);
        ASSERT_GT(count, 0) << said;
        said.append(chunk, static_cast<std::size_t>(count));
    }
    ::close(terminal);
    int status = 0;
    ::waitpid(process, &status, 0);
    EXPECT_TRUE(WIFEXITED(status)) << "by signal " << WTERMSIG(status);
    EXPECT_GT(files::readProjectFile(project).recording.metadata().endTime, 0);
}

TEST_F(RecordCommand, RecordsAnAreaWithItsClicksAndSumsUp) {
    test::TestWindow window(server, {0, 0, 640, 480}, red);
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
    EXPECT_TRUE(test::hasColor(*first, 2, 2, green, codingTolerance));
    EXPECT_TRUE(test::hasColor(*first, 56, 36, green, codingTolerance));
    EXPECT_TRUE(test::hasColor(*first, 64, 20, red, codingTolerance));
    const auto click = files::readProjectFile(project).recording.metadata().clickEvents.at(0);
    EXPECT_EQ((model::Point{click.x, click.y}), (model::Point{30, 20}));
}

TEST_F(RecordCommand, RecordsACoveredWindowUntilItIsClosed) {
    test::TestWindow window(server, {300, 100, 200, 120}, red, {.title = "Quarterly Report"});
    const test::TestWindow cover(server, {0, 0, 640, 480}, blue);
    const auto result =
        record("--mode window --window-title 'quarterly rep'", [&] { window.close(); });
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, HasSubstr("the window was closed; the recording holds what it"));
    const auto first = frames().at(0).pixels;
    EXPECT_EQ(first->width(), 200);
    EXPECT_TRUE(test::hasColor(*first, 100, 60, red, codingTolerance));
    EXPECT_EQ(files::readProjectFile(project).recording.metadata().captureRect,
              (model::Rect{300, 100, 200, 120}));
}

TEST_F(RecordCommand, WaitsBeforeItStarts) {
    const test::TestWindow window(server, {300, 100, 200, 120}, red, {.title = "Report"});
    const auto before = base::hostNow();
    const auto result = record(
        fmt::format("--mode window --window {} --delay 0.6 --seconds 0.2 --json", window.id()));
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_GT(base::inSeconds(base::hostNow() - before), 0.8);
    EXPECT_LT(files::readProjectFile(project).recording.metadata().endTime, 0.5);
    EXPECT_THAT(result.output, HasSubstr("\"cpuPercent\":"));
}

/// Paints coloured blocks all over a window for as long as it lives, which no encoder packs well.
class Painting {
  public:
    explicit Painting(test::TestWindow& window)
        : m_thread([&window](const std::stop_token& stop) {
            std::mt19937 random(1);
            while (!stop.stop_requested()) {
                const int x = static_cast<int>(random() % 620);
                const int y = static_cast<int>(random() % 460);
                window.fill({x, y, 20, 20}, random() & 0xffffff);
            }
        }) {}

  private:
    std::jthread m_thread;
};

TEST_F(RecordCommand, StopsWhenTheMovieIsAsLargeAsAllowed) {
    test::TestWindow window(server, {0, 0, 640, 480}, red);
    const Painting painting(window);
    const auto result = record("--max-size 0.7MB --seconds 30");
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, HasSubstr("B (the size limit)"));
    const auto size = std::filesystem::file_size(project / "recording.mov");
    EXPECT_GE(size, 700'000);
    EXPECT_LE(size, 12'000'000) << "what a quarter of a second adds, and what a busy machine does";
    EXPECT_GT(frames().size(), 2);
}

TEST_F(RecordCommand, EndsWithTheReasonWhenTheDiskIsFull) {
    test::TestWindow window(server, {0, 0, 640, 480}, red);
    const Painting painting(window);
    // The shell lets files grow to 3000 blocks of 512 bytes.
    const auto result = record("--seconds 30", {}, "trap '' XFSZ; ulimit -f 3000;");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("recording.mov: File too large"));
    EXPECT_FALSE(std::filesystem::exists(project)) << "nothing half-made";
    const auto kept = std::filesystem::directory_iterator(folder.path() / "Vantro")->path();
    EXPECT_THAT(result.output, HasSubstr("vantro recover '" + kept.string()));
    const auto recovery = fmt::format("'{}' recover '{}' --output '{}' >/dev/null 2>&1",
                                      VANTRO_PROGRAM, kept.string(), project.string());
    ASSERT_EQ(std::system(recovery.c_str()), 0); // NOLINT(concurrency-mt-unsafe)
    EXPECT_GE(frames().size(), 5) << "the movie up to then";
}

TEST(ByteSize, MayHaveAUnit) {
    for (const auto& [text, bytes] : {std::pair{"800000", 800'000U},
                                      {"500M", 500'000'000U},
                                      {"1.5 gb", 1'500'000'000U},
                                      {"0.5k", 500U}})
        EXPECT_EQ(cli::parseByteSize(text), bytes) << text;
    for (const auto* wrong : {"", "M", "0", "-5M", "500X", "500MM", "5 0M", "1e9", "nan", "inf",
                              "0.5", "10000000T", "500M "})
        EXPECT_FALSE(cli::parseByteSize(wrong)) << wrong;
}

TEST_F(RecordCommand, SaysWhatIsWrongWithWhatIsSelected) {
    const struct {
        const char* arguments;
        int exitCode;
        const char* message;
    } cases[]{
        {"--mode area --rect 700,0,100,100", 1, "Invalid screen area selected."},
        {"--mode area", 1, "Invalid screen area selected."},
        {"--mode area --rect 0,0,100", 2, "X,Y,W,H"},
        {"--mode area --rect 0,0,nan,100", 2, "X,Y,W,H"},
        {"--mode window", 1, "No window selected"},
        {"--mode window --window-title nothing", 1, "No window selected"},
        {"--display 1", 1, "Display not found"},
        {"--max-size 0", 2, "--max-size: 0 is no size such as 500M"},
    };
    for (const auto& [arguments, exitCode, message] : cases) {
        const auto result = record(std::string(arguments) + " --seconds 0.2");
        EXPECT_EQ(result.exitCode, exitCode) << arguments;
        EXPECT_THAT(result.output, HasSubstr(message)) << arguments;
        EXPECT_FALSE(std::filesystem::exists(project)) << arguments;
    }
}

} // namespace
} // namespace vantro::app
