// `vantro record` run as a user runs it, on a private X server; the projects it makes looked into.
#include "app/CommandLineFixture.h"
#include "app/cli/RecordingWatch.h"
#include "app/flows/ScriptedServices.h"
#include "capture/Colors.h"
#include "capture/MovieFrames.h"
#include "support/Eventually.h"
#include "support/Pointer.h"
#include "support/Program.h"
#include "support/SessionBus.h"
#include "support/TestWindow.h"

#include <pty.h>
#include <unistd.h>

namespace vantro::app {
namespace {

using namespace vantro::test;
using namespace vantro::test::colors;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr double codingTolerance = 8; // of 255 levels: the movie is not lossless

class RecordCommand : public ::testing::Test {
  protected:
    Result record(const std::string& arguments, const std::string& environment = {}) const {
        return vantro(fmt::format("record --verbose --output '{}' {}", project.string(), arguments),
                      fmt::format("DISPLAY={} TMPDIR='{}' {}", server.display(),
                                  folder.path().string(), environment));
    }

    const XServer server;
    TemporaryFolder folder;
    std::filesystem::path project = folder / "made.vantro";
    TestWindow window{server, {0, 0, 640, 480}, red};
};

TEST_F(RecordCommand, IsFinishedWhenItsTerminalIsClosed) {
    int terminal = -1;
    const auto process = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (process == 0) {
        const auto display = "DISPLAY=" + server.display();
        const auto work = "TMPDIR=" + folder.path().string();
        ::execlp("env", "env", "-u", "WAYLAND_DISPLAY", "-u", "XDG_SESSION_TYPE", display.c_str(),
                 work.c_str(), VANTRO_PROGRAM, "record", "--output", project.c_str(), nullptr);
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
    window.fill({100, 50, 60, 40}, green);
    Pointer hand(server);
    hand.moveTo(130, 70);
    std::jthread clicking([&](const std::stop_token& stop) {
        for (; !stop.stop_requested(); std::this_thread::sleep_for(std::chrono::milliseconds(50)))
            hand.click(1);
    });
    const auto result = record("--mode area --rect 100,50,301,201 --seconds 0.7");
    clicking = {};
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, HasSubstr(" a second), 0 dropped, "));
    EXPECT_THAT(result.output, HasSubstr("% CPU"));
    const auto first = framesOf(project / "recording.mov").at(0).pixels;
    EXPECT_EQ(first->width(), 300);
    EXPECT_EQ(first->height(), 200);
    EXPECT_TRUE(hasColor(*first, 2, 2, green, codingTolerance));
    EXPECT_TRUE(hasColor(*first, 56, 36, green, codingTolerance));
    EXPECT_TRUE(hasColor(*first, 64, 20, red, codingTolerance));
    const auto click = files::readProjectFile(project).recording.metadata().clickEvents.at(0);
    EXPECT_EQ((model::Point{click.x, click.y}), (model::Point{30, 20}));
}

TEST_F(RecordCommand, TakesMarksPausesAndItsEndFromOtherPrograms) {
    const SessionBus bus;
    const auto on = "DBUS_SESSION_BUS_ADDRESS='" + bus.address() + "'";
    for (const auto* command : {"stop", "mark", "pause", "toggle"}) {
        const auto refused = vantro(command, on);
        EXPECT_EQ(refused.exitCode, 1);
        EXPECT_THAT(refused.output, StartsWith("vantro: nothing is being recorded"));
    }
    Pointer(server).moveTo(130, 70);
    Result recorded;
    std::jthread recording(
        [&] { recorded = record("--no-system-audio --mode area --rect 100,50,300,200", on); });
    ASSERT_TRUE(eventually([&] { return vantro("mark", on).exitCode == 0; }));
    EXPECT_EQ(vantro("pause", on).exitCode, 0);
    EXPECT_THAT(vantro("mark", on).output, StartsWith("vantro: the recording is paused"));
    EXPECT_EQ(vantro("pause", on).exitCode, 0);
    EXPECT_EQ(vantro("mark", on).exitCode, 0) << "it goes on";
    EXPECT_EQ(vantro("pause", on).exitCode, 0);
    EXPECT_EQ(vantro("stop", on).exitCode, 0);
    const auto made = files::readProjectFile(project).recording; // at once
    recording.join();
    EXPECT_EQ(recorded.exitCode, 0) << recorded.output;
    ASSERT_EQ(made.metadata().clickEvents.size(), 2U);
    const auto& mark = made.metadata().clickEvents.front();
    EXPECT_EQ((model::Point{mark.x, mark.y}), (model::Point{30, 20}));
    EXPECT_THAT(vantro("stop", "-u DBUS_SESSION_BUS_ADDRESS -u XDG_RUNTIME_DIR").output,
                StartsWith("vantro: no session bus"));
}

TEST_F(RecordCommand, StopsWhenTheMovieIsAsLargeAsAllowed) {
    const auto result = record("--max-size 500 --seconds 30");
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, HasSubstr("B (the size limit)"));
    const auto made = files::readProjectFile(project).recording;
    EXPECT_GE(std::filesystem::file_size(made.movie()), 200);
    EXPECT_LT(made.metadata().endTime, 10);
}

TEST_F(RecordCommand, TakesNoMorePicturesThanIsAsked) {
    std::jthread drawing([&](const std::stop_token& stop) {
        for (std::uint32_t color = 0; !stop.stop_requested(); color += 0x10305)
            window.fill(color & 0xffffff);
    });
    const auto result = record("--no-system-audio --fps 15 --seconds 1");
    drawing = {};
    ASSERT_EQ(result.exitCode, 0) << result.output;
    const auto made = files::readProjectFile(project).recording;
    EXPECT_EQ(made.metadata().frameRate, 15);
    EXPECT_LE(framesOf(made.movie()).size(), 18U);
}

/// Recordings are made on a file system of this size, which nobody else sees.
std::string onSmallDisk(const std::filesystem::path& folder, const std::string& size) {
    return fmt::format("TMPDIR='{0}' unshare -rm sh -c 'mount -t tmpfs -o size={1} small \"$0\" && "
                       "exec \"$@\"' '{0}'",
                       folder.string(), size);
}

TEST_F(RecordCommand, StopsBeforeTheDiskIsFullWithAWholeFilm) {
    const auto disk = folder / "disk";
    std::filesystem::create_directory(disk);
    if (!succeeds("unshare -rm true"))
        GTEST_SKIP() << "this user cannot mount a small disk";
    std::jthread drawing([&](const std::stop_token& stop) {
        std::uint32_t number = 0;
        while (!stop.stop_requested()) // pictures that need room
            for (int y = 0; y < 480; y += 8)
                for (int x = 0; x < 640; x += 8)
                    window.fill({x, y, 8, 8}, (number += 0x9e3779) & 0xffffff);
    });
    const auto result = record("--no-system-audio --json --seconds 60", onSmallDisk(disk, "62M"));
    drawing = {};
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, HasSubstr("vantro: the disk is nearly full"));
    EXPECT_THAT(result.output, HasSubstr(R"("endedBy":"diskFull")"));
    const auto made = files::readProjectFile(project).recording;
    EXPECT_GE(std::filesystem::file_size(made.movie()), 200'000);
    EXPECT_NEAR(media::Asset::open(made.movie()).duration().seconds(), made.metadata().endTime,
                0.05);
    std::filesystem::remove_all(project);
    const auto refused = record("--seconds 1", onSmallDisk(disk, "20M"));
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.output, HasSubstr("is nearly full: 20 MB are free"));
    EXPECT_FALSE(std::filesystem::exists(project));
}

TEST(RecordingWatch, CountsTheFilmsSecondsNotThePauses) {
    using namespace std::chrono_literals;
    ScriptedRecorder recorder;
    recorder.recorderStatus.pausedFor = 300ms;
    const auto began = base::hostNow();
    EXPECT_EQ(cli::watchRecording(recorder, {}, {.seconds = 0.1, .bytes = {}}, {}),
              cli::RecordingEnd::seconds);
    EXPECT_GE(base::hostNow() - began, 400ms);
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

} // namespace
} // namespace vantro::app
