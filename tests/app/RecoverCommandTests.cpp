// Recordings killed in the middle, and `vantro recover` run over what they leave.
#include "app/CommandLineFixture.h"
#include "capture/MovieFrames.h"
#include "capture/session/CursorJournal.h"
#include "media/Sound.h"
#include "support/Eventually.h"
#include "support/FakeCamera.h"
#include "support/Pointer.h"
#include "support/Program.h"
#include "support/SessionBus.h"
#include "support/SoundServer.h"
#include "support/TestWindow.h"

#include <sstream>
#include <thread>

#include <gmock/gmock.h>

namespace vantro::app {
namespace {

namespace fs = std::filesystem;
using namespace vantro::test;
using ::testing::HasSubstr;

constexpr double mostLost = 1; // seconds

/// A `vantro record` of one area, until it is killed. Its recording lies below `folder`.
class Recording {
  public:
    Recording(const XServer& server, const fs::path& folder, const std::string& rect,
              std::vector<std::string> sources = {"--system-audio"},
              const std::string& variable = "VANTRO_TEST=")
        : m_folder(folder) {
        sources.insert(sources.begin(),
                       {"env", "DISPLAY=" + server.display(), "TMPDIR=" + folder.string(), variable,
                        VANTRO_PROGRAM, "record", "--output", folder / "never.vantro", "--mode",
                        "area", "--rect", rect});
        m_process = startProgram(std::move(sources));
    }
    ~Recording() { kill(); }
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    /// Ends it as nothing else can; returns when it is gone.
    void kill() {
        if (m_process > 0)
            endProgram(std::exchange(m_process, -1), SIGKILL);
        killed = base::hostNow();
    }
    /// Where its files lie; empty before there are any.
    fs::path files() const {
        std::error_code none;
        const fs::directory_iterator found(m_folder / "Vantro", none);
        return found == fs::directory_iterator() ? fs::path() : found->path();
    }

    /// Waits until a picture is safe on disk: before, there is nothing to recover.
    void awaitFirstPicture() const {
        const auto isSafe = [this] {
            const auto text = contentOf(files() / "recording.mov.journal");
            return text.contains("\npacket") && text.ends_with('\n');
        };
        if (!eventually(isSafe))
            throw std::runtime_error("nothing was recorded");
    }

    base::HostTime killed;

  private:
    fs::path m_folder;
    pid_t m_process = -1;
};

class Recovery : public ::testing::Test {
  protected:
    static Result recover(const fs::path& files, const fs::path& project) {
        return vantro(
            fmt::format("recover '{}' --output '{}' --json", files.string(), project.string()));
    }

    const XServer server;
    TemporaryFolder folder;
};

TEST_F(Recovery, KilledAtAnyMomentARecordingLosesLessThanItsLastSecond) {
    constexpr auto step = std::chrono::milliseconds(50);
    constexpr int lives[]{8, 9, 21, 34, 47, 60}; // steps; every other one is of what stands still
    TestWindow changing(server, {0, 0, 320, 480}, 0);
    Pointer hand(server);
    std::vector<std::unique_ptr<Recording>> running;
    for (const int life : lives) {
        const auto below = folder / std::to_string(life);
        fs::create_directory(below);
        const auto* rect = running.size() % 2 == 0 ? "0,0,64,64" : "400,100,64,64";
        running.push_back(std::make_unique<Recording>(server, below, rect));
    }
    for (const auto& recording : running)
        recording->awaitFirstPicture();
    const auto begun = base::hostNow();
    std::vector<base::HostTime> clicks;
    for (int now = 0; now <= 60; ++now) {
        changing.fill(static_cast<std::uint32_t>(now % 2 * 0xffffff));
        if (now % 10 == 3)
            clicks.push_back(hand.click(now % 20 == 3 ? 1 : 3));
        std::this_thread::sleep_until(begun + now * step);
        for (std::size_t i = 0; i < running.size(); ++i)
            if (lives[i] == now)
                running[i]->kill();
    }

    for (std::size_t i = 0; i < running.size(); ++i) {
        SCOPED_TRACE(lives[i]);
        const auto project = folder / (std::to_string(i) + ".vantro");
        const auto result = recover(running[i]->files(), project);
        ASSERT_EQ(result.exitCode, 0) << result.output;
        const auto metadata = files::readProjectFile(project).recording.metadata();
        const auto kept = std::ranges::count_if(clicks, [&](base::HostTime click) {
            return click < running[i]->killed - std::chrono::milliseconds(200);
        });
        ASSERT_GE(std::ssize(metadata.clickEvents), std::max<std::ptrdiff_t>(kept, 1));
        // The first click tells when the recording's time began.
        const auto lived = base::inSeconds(running[i]->killed - clicks.front()) +
                           metadata.clickEvents.front().timestamp;
        const auto movie = project / "recording.mov";
        EXPECT_GT(metadata.endTime, lived - mostLost);
        EXPECT_LE(metadata.endTime, lived);
        EXPECT_NEAR(media::Asset::open(movie).duration().seconds(), metadata.endTime, 0.1);
        if (i % 2 == 0) {
            EXPECT_GT(framesOf(movie).back().presentationTime.seconds(), lived - mostLost);
        }
    }
}

TEST_F(Recovery, KilledInAPauseARecordingEndsWhereThatBegan) {
    const SessionBus bus;
    const auto on = "DBUS_SESSION_BUS_ADDRESS=" + bus.address();
    TestWindow window(server, {0, 0, 64, 64}, 0);
    Pointer hand(server);
    hand.moveTo(20, 20);
    const auto launched = base::hostNow();
    Recording recording(server, folder.path(), "0,0,64,64", {"--no-system-audio"}, on);
    recording.awaitFirstPicture();
    const auto pause = [&] { return vantro("pause", on).exitCode == 0; };
    const auto path = [&] {
        return capture::readCursorJournal(recording.files() / "recording.mov").cursorPositions;
    };
    constexpr auto rest = std::chrono::seconds(1);
    ASSERT_TRUE(eventually(pause)); // as soon as it listens
    window.fill(0xffffff);
    hand.moveTo(60, 60);
    std::this_thread::sleep_for(rest);
    ASSERT_TRUE(pause());
    const auto resumed = base::hostNow();
    ASSERT_TRUE(eventually([&] { return path().size() > 30 && path().back().x == 60; }));
    const auto least = base::hostNow() - resumed;
    ASSERT_TRUE(pause());
    const auto most = base::hostNow() - launched - rest;
    std::this_thread::sleep_for(rest);
    recording.kill();
    const auto project = folder / "recovered.vantro";
    ASSERT_EQ(recover(recording.files(), project).exitCode, 0);
    const auto made = files::readProjectFile(project).recording;
    EXPECT_GE(made.metadata().endTime, base::inSeconds(least));
    EXPECT_LE(made.metadata().endTime, base::inSeconds(most));
    EXPECT_NEAR(media::Asset::open(made.movie()).duration().seconds(), made.metadata().endTime,
                0.05);
    EXPECT_GT(framesOf(made.movie()).back().pixels->row(0, 32)[32], 200);
}

TEST_F(Recovery, KeepsTheSoundAndWhoseItIsAndTheWebcam) {
    using Kind = SoundServer::Kind;
    if (!SoundServer::isInstalled(Kind::pipewire))
        GTEST_SKIP() << "its programs are not installed";
    SoundServer desktop(Kind::pipewire);
    desktop.start();
    desktop.addOutput("box");
    const TonePlayer player("box", 440);
    const FakeCamera camera;
    Recording recording(server, folder.path(), "0,0,64,64", {"--system-audio", "--webcam"});
    recording.awaitFirstPicture();
    const auto files = recording.files();
    ASSERT_TRUE(eventually([&] { // a second of each is safe on disk
        std::istringstream lines(contentOf(files / "recording.mov.journal"));
        int packets = 0;
        for (std::string line; std::getline(lines, line);)
            packets += line.starts_with("packet 1 ") ? 1 : 0;
        const auto webcam = contentOf(files / "webcam.mov.journal");
        return packets > 48 && std::ranges::count(webcam, '\n') > 30 &&
               contentOf(files / "recording.mov.cursor").contains("\nsound system\n");
    }));
    recording.kill();
    const auto project = folder / "recovered.vantro";
    ASSERT_EQ(recover(files, project).exitCode, 0);
    const auto made = app::files::readProjectFile(project).recording;
    EXPECT_TRUE(made.metadata().hasSystemAudio);
    EXPECT_FALSE(made.metadata().hasMicrophoneAudio);
    const auto heard = soundOf(made.movie());
    EXPECT_GT(toneAmplitude(heard, 440, 0.5, secondsOf(heard) - 0.1), 0.4);
    EXPECT_TRUE(made.metadata().hasWebcam);
    EXPECT_GT(framesOf(made.webcamMovie()).size(), 25U);
    EXPECT_NEAR(media::Asset::open(made.webcamMovie()).duration().seconds(),
                made.metadata().endTime, 0.3);
}

TEST_F(Recovery, ListsWhatIsInterruptedAndLeavesWhatIsUnderWay) {
    const auto list = [&] {
        return vantro("recover", "TMPDIR='" + folder.path().string() + "'").output;
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
