#pragma once

#include "capture/MovieFrames.h"
#include "capture/sound/SoundRecordingFixture.h"
#include "support/FakeCamera.h"

namespace vantro::capture::camera {

using namespace std::chrono_literals;
using namespace test;
using sound::Recording;

inline SourceSwitches cameraOnly(const std::string& device = {}) {
    SourceSwitches sources;
    sources.camera = true;
    sources.cameraDevice = device;
    return sources;
}

inline std::filesystem::path webcamOf(const Recording& recording) {
    return recording.folder / "webcam.mov";
}

/// The counter in a recorded picture of a fake camera.
inline std::uint32_t counterIn(const media::PixelBuffer& picture) {
    std::uint32_t counter = 0;
    for (int bit = 0; bit < 16; ++bit)
        counter |= static_cast<std::uint32_t>(picture.row(0, 4)[bit * 8 + 4] > 128) << bit;
    return counter;
}

/// Whether the left half of it is white.
inline bool isWhite(const media::PixelBuffer& picture) {
    return picture.row(0, picture.height() / 2)[picture.width() / 4] > 128;
}

/// What of the recording is said to be missing.
inline std::vector<std::string> missingIn(const Recording& recording) {
    return recording.session->statistics().lostSources;
}

inline bool hasPictures(const Recording& recording, std::int64_t count) {
    const auto before = recording.session->statistics().webcamFramesCaptured;
    return eventually(
        [&] { return recording.session->statistics().webcamFramesCaptured >= before + count; });
}

/// Whether the screen is recorded, for a moment.
inline bool isRecorded(const Recording& recording) {
    return eventually([&] { return recording.session->statistics().framesCaptured > 0; }) &&
           recording.goesOnFor(100ms);
}

/// A private PipeWire server, one for all tests of the program.
class CameraTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        if (!SoundServer::isInstalled(SoundServer::Kind::pipewire))
            return;
        server = std::make_unique<SoundServer>(SoundServer::Kind::pipewire);
        server->start();
    }
    static void TearDownTestSuite() { server.reset(); }
    void SetUp() override {
        if (!server)
            GTEST_SKIP() << "its programs are not installed";
    }

    static inline std::unique_ptr<SoundServer> server;
};

} // namespace vantro::capture::camera
