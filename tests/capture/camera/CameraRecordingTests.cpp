// Whole recordings with a camera of a real, private PipeWire server, looked at in the finished
// movies.
#include "capture/camera/CameraFixture.h"
#include "media/TestMovies.h"

namespace vantro::capture::camera {
namespace {

class CameraRecording : public CameraTest {};

FakeCamera::Settings small(FakeCamera::Layout layout = FakeCamera::Layout::yuyv) {
    FakeCamera::Settings settings;
    settings.formats = {{.layout = layout, .width = 320, .height = 240, .rate = 30}};
    return settings;
}

TEST_F(CameraRecording, HasEachPictureAtItsTimeInAMovieAsLongAsTheScreens) {
    const FakeCamera camera(small());
    Recording recording(cameraOnly());
    ASSERT_TRUE(recording.goesOnFor(700ms));
    recording.session->pause();
    ASSERT_TRUE(recording.goesOnFor(400ms));
    const double resumed = base::inSeconds(base::hostNow().time_since_epoch());
    recording.session->resume();
    ASSERT_TRUE(recording.goesOnFor(700ms));
    recording.stop();
    EXPECT_TRUE(recording.metadata.hasWebcam);
    EXPECT_THAT(missingIn(recording), testing::IsEmpty());
    const auto frames = framesOf(webcamOf(recording));
    ASSERT_GT(frames.size(), 25U);
    EXPECT_EQ(frames.front().presentationTime, media::MediaTime{}) << "what it saw at time zero";
    EXPECT_EQ(frames.front().pixels->width(), 320);
    EXPECT_EQ(frames.front().pixels->height(), 240);
    const auto end = media::Asset::open(webcamOf(recording)).duration().seconds();
    EXPECT_NEAR(end, recording.metadata.endTime, 0.002);
    // From each picture to the next: the movie's time is the camera's, but for the pause, after
    // which it goes on with what the camera saw just before.
    const auto sent = camera.times();
    int pauses = 0;
    std::size_t pausedAt = 0;
    for (std::size_t i = 2; i < frames.size(); ++i) {
        const auto last = counterIn(*frames[i - 1].pixels);
        const auto now = counterIn(*frames[i].pixels);
        if (i + 1 == frames.size() && last == now)
            break; // the last one comes twice where it was written before the end was known
        ASSERT_LT(last, now);
        const double passed =
            frames[i].presentationTime.seconds() - frames[i - 1].presentationTime.seconds();
        const double leftOut = sent.at(now) - sent.at(last) - passed;
        if (leftOut > 0.2) {
            ++pauses;
            pausedAt = i;
            EXPECT_LT(sent.at(now), resumed);
            EXPECT_GT(sent.at(now), resumed - 0.1);
        } else {
            EXPECT_NEAR(leftOut, 0, i == pausedAt + 1 ? 0.05 : 0.001) << i;
        }
    }
    EXPECT_EQ(pauses, 1);
}

TEST_F(CameraRecording, FlashesWithTheScreen) {
    using Stamps = FakeCamera::Stamps;
    for (const auto stamps : {Stamps::host, Stamps::its, Stamps::none}) {
        auto settings = small(FakeCamera::Layout::mjpeg);
        settings.stamps = stamps;
        FakeCamera camera(settings);
        Recording recording(cameraOnly());
        ASSERT_TRUE(recording.goesOnFor(300ms));
        std::vector<double> filled;
        for (int flash = 0; flash < 4; ++flash) {
            camera.setWhite(true);
            recording.window.fill(colors::white);
            filled.push_back(base::inSeconds(base::hostNow().time_since_epoch()));
            ASSERT_TRUE(recording.goesOnFor(150ms));
            camera.setWhite(false);
            recording.window.fill(colors::black);
            ASSERT_TRUE(recording.goesOnFor(217ms));
        }
        recording.stop();
        const auto onScreen = turning(framesOf(recording.movie),
                                      [](const auto& p) { return p.row(0, 60)[80] > 128; });
        const auto inCamera = turning(framesOf(webcamOf(recording)), isWhite);
        ASSERT_EQ(onScreen.size(), 4U);
        ASSERT_EQ(inCamera.size(), 4U);
        // Against when the camera saw it, which is up to a picture later.
        const auto sent = camera.times();
        constexpr double cameraFrame = 1.0 / 30;
        for (std::size_t i = 0; i < onScreen.size(); ++i) {
            const double seen = sent.at(counterIn(*inCamera[i].pixels)) - filled[i];
            const double recorded =
                inCamera[i].presentationTime.seconds() - onScreen[i].presentationTime.seconds();
            EXPECT_NEAR(recorded, seen, cameraFrame) << "stamps: " << static_cast<int>(stamps);
        }
    }
}

TEST_F(CameraRecording, TheNamedCameraIsTakenAndElseTheUsualOne) {
    auto usual = small();
    usual.name = "usual";
    usual.priority = 2000;
    auto other = small();
    other.name = "other";
    other.description = "Another camera";
    const FakeCamera first(other);
    const FakeCamera second(usual);
    const auto usedBy = [&](const std::string& device) {
        Recording recording(cameraOnly(device));
        EXPECT_TRUE(hasPictures(recording, 2));
        const bool isUsual = second.isUsed();
        EXPECT_NE(isUsual, first.isUsed());
        recording.stop();
        EXPECT_TRUE(eventually([&] { return !first.isUsed() && !second.isUsed(); }));
        return isUsual ? "usual" : "other";
    };
    EXPECT_STREQ(usedBy({}), "usual");
    EXPECT_STREQ(usedBy("other"), "other");
    EXPECT_STREQ(usedBy("Another camera"), "other");
    const auto listed = makeDesktopCameras()->list();
    ASSERT_TRUE(listed);
    EXPECT_THAT(*listed, testing::ElementsAre(CameraDevice{"usual", "Test camera", true},
                                              CameraDevice{"other", "Another camera", false}));
}

} // namespace
} // namespace vantro::capture::camera
