// Whole recordings with sound of real, private sound servers, looked at in the finished movie.
#include "capture/Colors.h"
#include "capture/MovieFrames.h"
#include "capture/OwnProcess.h"
#include "capture/RecordingSession.h"
#include "capture/sound/PulseSoundDevices.h"
#include "media/Sound.h"
#include "support/Eventually.h"
#include "support/SoundServer.h"
#include "support/TemporaryFolder.h"
#include "support/TestWindow.h"

#include <gmock/gmock.h>

namespace vantro::capture::sound {
namespace {

using namespace std::chrono_literals;
using namespace test;
using Kind = SoundServer::Kind;

/// A recording of a small screen with its sound, under way.
struct Recording {
    explicit Recording(const SourceSwitches& sources) {
        RecordingRequest request;
        request.sources = sources;
        session = std::make_unique<RecordingSession>(
            request, [this] { return connectTo(server); }, makePulseSoundDevices());
        session->choose({});
        session->start(movie);
        began = base::hostNow();
    }

    void stop() { metadata = session->stop(); }
    bool goesOnFor(base::HostDuration time) const {
        const auto end = base::hostNow() + time;
        return eventually([&] { return base::hostNow() > end; });
    }
    /// The sound of a track of the finished movie; interleaved stereo.
    std::vector<float> sound(std::size_t track) const {
        const auto asset = media::Asset::open(movie);
        media::Composition composition(asset);
        composition.addTrack(media::MediaType::audio)
            .insert({{}, asset.duration()}, asset.tracks(media::MediaType::audio).at(track), {});
        return allSound(composition);
    }

    const XServer server{{.width = 160, .height = 120}};
    TestWindow window{server, {0, 0, 160, 120}, colors::black};
    TemporaryFolder folder;
    std::filesystem::path movie = folder / "recording.mov";
    std::unique_ptr<RecordingSession> session;
    model::RecordingMetadata metadata;
    base::HostTime began;
};

constexpr SourceSwitches systemOnly{
    .systemSound = true, .microphone = false, .camera = false, .microphoneDevice = {}};
constexpr SourceSwitches microphoneOnly{
    .systemSound = false, .microphone = true, .camera = false, .microphoneDevice = {}};
constexpr SourceSwitches both{
    .systemSound = true, .microphone = true, .camera = false, .microphoneDevice = {}};

class SoundRecording : public testing::TestWithParam<Kind> {
  protected:
    void SetUp() override {
        if (!SoundServer::isInstalled(GetParam()))
            GTEST_SKIP() << "its programs are not installed";
        server = std::make_unique<SoundServer>(GetParam());
        server->start();
        server->addMicrophone("mic");
        server->addOutput("box");
    }

    std::unique_ptr<SoundServer> server;
};

INSTANTIATE_TEST_SUITE_P(, SoundRecording, testing::Values(Kind::pipewire, Kind::pulseaudio),
                         [](const auto& kind) {
                             return kind.param == Kind::pipewire ? "pipeWire" : "pulseAudio";
                         });

TEST_P(SoundRecording, TellsSpeakersAndMicrophoneApart) {
    const TonePlayer speakers("box", 440);
    const TonePlayer voice("mic_feed", 1000);
    Recording recording(both);
    ASSERT_TRUE(recording.goesOnFor(1500ms));
    recording.stop();
    EXPECT_TRUE(recording.metadata.hasSystemAudio);
    EXPECT_TRUE(recording.metadata.hasMicrophoneAudio);
    EXPECT_THAT(recording.session->statistics().lostSources, testing::IsEmpty());
    const double end = recording.metadata.endTime;
    const struct {
        double own;
        double other;
    } tracks[]{{440, 1000}, {1000, 440}};
    for (std::size_t track = 0; track < 2; ++track) {
        const auto sound = recording.sound(track);
        EXPECT_GT(toneAmplitude(sound, tracks[track].own, 0.1, end - 0.1), 0.4) << track;
        EXPECT_LT(toneAmplitude(sound, tracks[track].other, 0.1, end - 0.1), 0.005) << track;
    }
    for (const auto& track : media::Asset::open(recording.movie).tracks(media::MediaType::audio)) {
        EXPECT_EQ(track.timeRange.start, media::MediaTime{});
        EXPECT_NEAR(track.timeRange.end().seconds(), end, 0.002);
    }
}

/// When the window turns white in the movie, seconds.
std::vector<double> flashTimes(const std::filesystem::path& movie) {
    std::vector<double> times;
    bool wasWhite = false;
    for (const auto& frame : framesOf(movie)) {
        const bool isWhite = frame.pixels->row(0, 60)[80] > 128;
        if (isWhite && !wasWhite)
            times.push_back(frame.presentationTime.seconds());
        wasWhite = isWhite;
    }
    return times;
}

TEST_P(SoundRecording, KeepsSoundInStepWithThePicture) {
    TonePlayer beeper("box", 1000);
    beeper.setHeard(false);
    Recording recording(systemOnly);
    ASSERT_TRUE(eventually([&] { return recording.session->statistics().framesCaptured > 0; }));
    const MonitorRecorder monitor(GetParam(), "box");
    ASSERT_TRUE(recording.goesOnFor(300ms));
    std::vector<double> flashed;
    for (int beep = 0; beep < 6; ++beep) {
        beeper.setHeard(true);
        recording.window.fill(colors::white);
        flashed.push_back(base::inSeconds(base::hostNow().time_since_epoch()));
        monitor.hear(0.2);
        beeper.setHeard(false);
        recording.window.fill(colors::black);
        monitor.hear(0.37);
    }
    recording.stop();
    const auto heard = beepTimes(monitor.sound());
    const auto beeps = beepTimes(recording.sound(0));
    const auto flashes = flashTimes(recording.movie);
    ASSERT_EQ(heard.size(), 6);
    ASSERT_EQ(beeps.size(), 6);
    ASSERT_EQ(flashes.size(), 6);
    std::vector<double> offsets;
    for (std::size_t i = 0; i < 6; ++i) {
        const double played =
            monitor.timeOf(static_cast<std::size_t>(heard[i] * media::mixing::sampleRate));
        offsets.push_back((beeps[i] - flashes[i]) - (played - flashed[i]));
    }
    EXPECT_THAT(offsets, testing::Each(testing::AllOf(testing::Ge(-0.02), testing::Le(0.02))));
}

} // namespace
} // namespace vantro::capture::sound
