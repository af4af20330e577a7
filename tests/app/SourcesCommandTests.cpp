// A recording with all that there is to record, made and exported by the program as a user runs it:
// its sounds told apart by their pitch, its pictures by their flashes.
#include "app/CommandLineFixture.h"
#include "base/HostClock.h"
#include "capture/Colors.h"
#include "capture/MovieFrames.h"
#include "media/Sound.h"
#include "support/Eventually.h"
#include "support/FakeCamera.h"
#include "support/SoundServer.h"
#include "support/TestWindow.h"

#include <thread>

#include <gmock/gmock.h>
namespace vantro::app {
namespace {

using namespace std::chrono_literals;
using namespace vantro::test;

/// Where something is in a picture, in fractions of it.
struct Spot {
    double x;
    double y;
};

/// When the spot turns white, seconds.
std::vector<double> flashesAt(const std::vector<media::VideoFrame>& frames, Spot spot) {
    return timesOf(turning(frames, [spot](const media::PixelBuffer& picture) {
        return picture.row(
                   0, static_cast<int>(
                          spot.y * picture.height()))[static_cast<int>(spot.x * picture.width())] >
               128;
    }));
}

class SourcesCommand : public testing::Test {
  protected:
    void SetUp() override {
        if (!SoundServer::isInstalled(SoundServer::Kind::pipewire))
            GTEST_SKIP() << "its programs are not installed";
        desktop.start();
        desktop.addMicrophone("mic");
        desktop.addOutput("box");
    }

    Result run(const std::string& arguments) const {
        return vantro(arguments, fmt::format("DISPLAY={} TMPDIR='{}'", server.display(),
                                             folder.path().string()));
    }

    SoundServer desktop{SoundServer::Kind::pipewire};
    const XServer server{{.width = 640, .height = 480}};
    TemporaryFolder folder;
    TestWindow window{server, {0, 0, 640, 480}, colors::black};
};

TEST_F(SourcesCommand, RecordsAndExportsScreenSoundMicrophoneAndCameraInStep) {
    FakeCamera camera;
    const TonePlayer speakers("box", 440);
    const TonePlayer voice("mic_feed", 1000);
    const auto project = (folder / "all.vantro").string();
    const auto film = folder / "all.mp4";
    Result recorded;
    std::jthread recording([&] {
        recorded = run("record --json --microphone --webcam 'Test camera' --seconds 3 --output '" +
                       project + "'");
    });
    ASSERT_TRUE(eventually([&] { return camera.isUsed(); }));
    const auto begin = base::hostNow();
    for (int flash = 0; flash < 3; ++flash) {
        std::this_thread::sleep_until(begin + 1200ms + flash * 700ms);
        camera.setWhite(true);
        window.fill(colors::white);
        std::this_thread::sleep_until(begin + 1500ms + flash * 700ms);
        camera.setWhite(false);
        window.fill(colors::black);
    }
    recording.join();
    ASSERT_EQ(recorded.exitCode, 0) << recorded.output;
    const auto summary =
        nlohmann::json::parse(recorded.output.substr(recorded.output.rfind("{\"output")));
    EXPECT_TRUE(summary.at("missing").empty()) << recorded.output;
    EXPECT_GT(summary.at("webcamFrames"), 60);
    EXPECT_EQ(summary.at("webcamDropped"), 0);
    const auto made = files::readProjectFile(project).recording.metadata();
    EXPECT_TRUE(made.hasSystemAudio && made.hasMicrophoneAudio && made.hasWebcam);

    const auto exported = run("export '" + project + "' --output '" + film.string() + "'");
    ASSERT_EQ(exported.exitCode, 0) << exported.output;
    // The webcam's square in its corner: 0.2 of the width, with a margin of 0.08 of itself.
    const double side = 0.2;
    const double aspect = 640.0 / 480;
    const Spot inCamera{1 - side * 0.83, 1 - side * aspect * 0.58};
    const Spot strong{1 - side * 0.33, 1 - side * aspect * 0.58};
    const auto frames = framesOf(film);
    const auto onScreen = flashesAt(frames, {0.3, 0.4});
    const auto onCamera = flashesAt(frames, inCamera);
    ASSERT_EQ(onScreen.size(), 3U);
    ASSERT_EQ(onCamera.size(), 3U);
    for (std::size_t i = 0; i < onScreen.size(); ++i)
        EXPECT_NEAR(onCamera[i], onScreen[i], 1.0 / 30 + 1.0 / 60 + 0.001) << i;
    constexpr std::uint32_t strongColor =
        FakeCamera::red << 16 | FakeCamera::green << 8 | FakeCamera::blue;
    const auto& last = *frames.back().pixels;
    EXPECT_TRUE(hasColor(last, static_cast<int>(strong.x * last.width()),
                         static_cast<int>(strong.y * last.height()), strongColor, 6));
    const auto sound = soundOf(film);
    for (const double pitch : {440, 1000})
        EXPECT_GT(toneAmplitude(sound, pitch, 0.5, secondsOf(sound) - 0.3), 0.2) << pitch;
}

TEST_F(SourcesCommand, ListsWhatThereIsAndSaysInOneLineWhatIsNot) {
    const FakeCamera camera;
    const auto listed = nlohmann::json::parse(run("devices --json").output);
    const auto isCamera = [](const nlohmann::json& each) { return each.at("kind") == "camera"; };
    const auto found = std::ranges::find_if(listed, isCamera);
    ASSERT_NE(found, listed.end());
    EXPECT_EQ(found->at("name"), "test_camera");
    EXPECT_EQ(found->at("description"), "Test camera");
    EXPECT_EQ(found->at("isDefault"), true);
    const auto recorded =
        run("record --no-system-audio --webcam 'no such' --seconds 0.2 --output '" +
            (folder / "none.vantro").string() + "'");
    EXPECT_EQ(recorded.exitCode, 0);
    EXPECT_THAT(recorded.output,
                testing::HasSubstr("vantro: not recorded: Camera: there is no no such\n"));
}

} // namespace
} // namespace vantro::app
