// Recordings killed in the middle, and `vantro recover` run over what they leave.
#include "app/CommandLineFixture.h"
#include "base/HostClock.h"
#include "capture/MovieFrames.h"
#include "support/Eventually.h"
#include "support/Pointer.h"
#include "support/TestWindow.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <random>
#include <thread>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <spawn.h>
#include <sys/wait.h>

namespace vantro::app {
namespace {

namespace fs = std::filesystem;
using test::TestWindow;
using test::XServer;
using ::testing::HasSubstr;
using vantro::test::TemporaryFolder;

constexpr double mostLost = 1; // seconds

/// A `vantro record` of one area, until it is killed. Its recording lies below `folder`.
class Recording {
  public:
    Recording(const test::XServer& server, const fs::path& folder, const std::string& rect)
        : m_folder(folder) {
        fs::create_directories(folder);
        const auto command =
            fmt::format("DISPLAY={} TMPDIR='{}' exec '{}' record --output '{}' "
                        "--mode area --rect {} >'{}' 2>&1",
                        server.display(), folder.string(), VANTRO_PROGRAM,
                        (folder / "never.vantro").string(), rect, (folder / "log").string());
        const char* const arguments[]{"sh", "-c", command.c_str(), nullptr};
        if (::posix_spawnp(&m_process, "sh", nullptr, nullptr, const_cast<char* const*>(arguments),
                           environ) != 0)
            throw std::runtime_error("cannot start the recorder");
    }
    ~Recording() { kill(); }
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    /// Ends it as nothing else can; returns when it is gone.
    void kill() {
        if (m_process <= 0)
            return;
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
        m_process = -1;
        killed = base::hostNow();
    }

    /// Where its files lie; empty before there are any.
    fs::path files() const {
        std::error_code none;
        const fs::directory_iterator found(m_folder / "Vantro", none);
        return found == fs::directory_iterator() ? fs::path() : found->path();
    }

    base::HostTime killed;

    /// Waits until a picture is safe on disk: before, there is nothing to recover.
    void awaitFirstPicture() const {
        const auto isSafe = [this] {
            std::ifstream journal(files() / "recording.mov.journal");
            const std::string text(std::istreambuf_iterator<char>(journal), {});
            return text.find("\npacket") != std::string::npos && text.ends_with('\n');
        };
        if (!test::eventually(isSafe))
            throw std::runtime_error("nothing was recorded");
    }

  private:
    fs::path m_folder;
    pid_t m_process = -1;
};

class Recovery : public ::testing::Test {
  protected:
    static test::Result recover(const fs::path& files, const fs::path& project) {
        return test::vantro(
            fmt::format("recover '{}' --output '{}' --json", files.string(), project.string()));
    }

    const test::XServer server;
    test::TemporaryFolder folder;
};

/// The screen's left half changes every 50 ms and tells when; its right half stands still.
class ChangingScreen {
  public:
    explicit ChangingScreen(const test::XServer& server)
        : m_changing(server, {0, 0, 320, 480}, colorOf(0)), m_still(server, {320, 0, 320, 480}, 0) {
        m_painted.push_back(base::hostNow());
    }

    void change() {
        m_changing.fill(colorOf(m_painted.size()));
        m_painted.push_back(base::hostNow());
    }

    /// When the left half got the brightness of this picture, at the latest before `end`.
    base::HostTime paintedBefore(base::HostTime end, const media::PixelBuffer& picture) const {
        const auto level = std::lround((picture.row(0, 10)[10] - 16) / 219.0 * levels);
        for (auto i = m_painted.size(); i-- > 0;)
            if (m_painted[i] < end && static_cast<long>(i % levels) == level)
                return m_painted[i];
        return {};
    }

  private:
    static constexpr std::size_t levels = 40; // far enough apart for a lossy movie
    static std::uint32_t colorOf(std::size_t index) {
        const auto gray =
            static_cast<std::uint32_t>(std::lround(255.0 * (index % levels) / levels));
        return gray * 0x010101U;
    }

    test::TestWindow m_changing;
    test::TestWindow m_still;
    std::vector<base::HostTime> m_painted;
};

TEST_F(Recovery, KilledAtAnyMomentARecordingLosesLessThanItsLastSecond) {
    constexpr int recordings = 20;
    constexpr auto step = std::chrono::milliseconds(50);
    std::mt19937 random(7);
    std::uniform_int_distribution<int> life(8, 60); // steps, beyond the first click
    ChangingScreen screen(server);
    test::Pointer hand(server);
    std::vector<std::unique_ptr<Recording>> running;
    std::vector<int> lives;
    for (int i = 0; i < recordings; ++i) {
        const auto* rect = i % 2 == 0 ? "0,0,64,64" : "400,100,64,64";
        running.push_back(std::make_unique<Recording>(server, folder / std::to_string(i), rect));
        lives.push_back(life(random));
    }
    for (const auto& recording : running)
        recording->awaitFirstPicture();
    const auto begun = base::hostNow();
    std::vector<base::HostTime> clicks;
    for (int now = 0; now <= 60; ++now) {
        screen.change();
        if (now % 10 == 3)
            clicks.push_back(hand.click(now % 20 == 3 ? 1 : 3));
        std::this_thread::sleep_until(begun + now * step);
        for (std::size_t i = 0; i < running.size(); ++i)
            if (lives[i] == now)
                running[i]->kill();
    }

    for (std::size_t i = 0; i < running.size(); ++i) {
        const auto name = fmt::format("recording {} of {} steps", i, lives[i]);
        const auto project = folder / (std::to_string(i) + ".vantro");
        const auto result = recover(running[i]->files(), project);
        ASSERT_EQ(result.exitCode, 0) << name << ": " << result.output;
        const auto metadata = files::readProjectFile(project).recording.metadata();
        const auto kept = std::ranges::count_if(clicks, [&](base::HostTime click) {
            return click < running[i]->killed - std::chrono::milliseconds(200);
        });
        ASSERT_GE(std::ssize(metadata.clickEvents), std::max<std::ptrdiff_t>(kept, 1)) << name;
        // The first click tells when the recording's time began.
        const auto lived = base::inSeconds(running[i]->killed - clicks.front()) +
                           metadata.clickEvents.front().timestamp;
        const auto length = media::Asset::open(project / "recording.mov").duration().seconds();
        EXPECT_GT(metadata.endTime, lived - mostLost) << name;
        EXPECT_LE(metadata.endTime, lived) << name;
        EXPECT_NEAR(length, metadata.endTime, 0.1) << name;
        const auto frames = test::framesOf(project / "recording.mov");
        if (i % 2 == 0) {
            const auto shown = screen.paintedBefore(running[i]->killed, *frames.back().pixels);
            EXPECT_LT(base::inSeconds(running[i]->killed - shown), mostLost) << name;
        }
    }
}

TEST_F(Recovery, ListsWhatIsInterruptedAndLeavesWhatIsUnderWay) {
    const auto list = [&] {
        return test::vantro("recover", "TMPDIR='" + folder.path().string() + "'").output;
    };
    EXPECT_THAT(list(), HasSubstr("No interrupted recording"));
    Recording recording(server, folder.path(), "0,0,64,64");
    recording.awaitFirstPicture();
    const auto project = folder / "early.vantro";
    const auto result = recover(recording.files(), project);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("It is still being recorded"));
    EXPECT_THAT(list(), HasSubstr("No interrupted recording"));
    recording.kill();
    EXPECT_THAT(list(), HasSubstr(recording.files().string()));
    EXPECT_EQ(recover(recording.files(), project).exitCode, 0);
    EXPECT_THAT(list(), HasSubstr("No interrupted recording"));

    // What is whole is saved once more; a project is never lost to it.
    EXPECT_THAT(recover(recording.files(), project).output, HasSubstr("exists; use --force"));
    EXPECT_EQ(recover(recording.files(), folder / "again.vantro").exitCode, 0);
    EXPECT_THAT(recover(folder.path(), folder / "x.vantro").output,
                HasSubstr("holds no recording"));
}

} // namespace
} // namespace vantro::app
