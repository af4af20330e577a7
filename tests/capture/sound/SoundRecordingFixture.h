#pragma once

#include "capture/Colors.h"
#include "capture/OwnProcess.h"
#include "capture/camera/DesktopCameras.h"
#include "capture/session/RecordingSession.h"
#include "capture/sound/PulseSoundDevices.h"
#include "media/Sound.h"
#include "support/Eventually.h"
#include "support/SoundServer.h"
#include "support/TestWindow.h"

#include <gmock/gmock.h>

namespace vantro::capture::sound {

using namespace std::chrono_literals;
using namespace test;
using Kind = SoundServer::Kind;

/// A recording of a small screen with what is asked for besides, under way.
struct Recording {
    explicit Recording(const SourceSwitches& sources) {
        RecordingRequest request;
        request.sources = sources;
        session = std::make_unique<RecordingSession>(
            request, [this] { return connectTo(server); }, makePulseSoundDevices(),
            camera::makeDesktopCameras());
        session->choose({});
        session->start(movie);
        began = base::hostNow();
    }

    void stop() {
        ended = base::hostNow();
        metadata = session->stop();
    }
    bool goesOnFor(base::HostDuration time) const {
        const auto end = base::hostNow() + time;
        return eventually([&] { return base::hostNow() > end; });
    }
    /// Waits until the source is loud, as a tone of a test is.
    bool isHeard(SoundKind kind) const {
        return eventually([&] {
            return std::ranges::any_of(session->statistics().sounds, [&](const auto& sound) {
                return sound.kind == kind && sound.level > 0.4F;
            });
        });
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
    base::HostTime ended;
};

/// How loud the tone is in each tenth of a second of a sound.
inline std::vector<double> loudness(const std::vector<float>& sound, double frequency) {
    std::vector<double> levels;
    for (double from = 0; from + 0.1 < secondsOf(sound); from += 0.1)
        levels.push_back(toneAmplitude(sound, frequency, from, from + 0.1));
    return levels;
}

inline const SourceSwitches systemOnly{
    .systemSound = true, .microphone = false, .camera = false, .microphoneDevice = {}};
inline const SourceSwitches microphoneOnly{
    .systemSound = false, .microphone = true, .camera = false, .microphoneDevice = {}};
inline const SourceSwitches both{
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

inline std::string serverName(const testing::TestParamInfo<Kind>& kind) {
    return kind.param == Kind::pipewire ? "pipeWire" : "pulseAudio";
}

} // namespace vantro::capture::sound
