// Cameras that are not there, go, or fail: what else is recorded stays whole.
#include "capture/camera/CameraFixture.h"
#include "capture/camera/CameraWatch.h"
#include "media/MovieRecovery.h"

namespace vantro::capture::camera {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CameraPresence : public CameraTest {};

FakeCamera::Settings settingsOf(FakeCamera::Layout layout) {
    FakeCamera::Settings settings;
    settings.formats = {{.layout = layout, .width = 160, .height = 120, .rate = 30}};
    return settings;
}

/// Both movies reach to the end of the recording; gives the camera's pictures.
std::vector<media::VideoFrame> wholeWebcam(const Recording& recording) {
    EXPECT_TRUE(recording.metadata.hasWebcam);
    for (const auto& movie : {recording.movie, webcamOf(recording)}) {
        EXPECT_EQ(media::movieCondition(movie), media::MovieCondition::whole);
        const auto asset = media::Asset::open(movie, media::TimeZero::fileZero);
        EXPECT_NEAR(asset.duration().seconds(), recording.metadata.endTime, 0.002);
    }
    return framesOf(webcamOf(recording));
}

TEST_F(CameraPresence, IsKnownAsCamerasAndTheirServerComeAndGo) {
    std::atomic<int> changes = 0;
    const CameraWatch watch([&] { ++changes; });
    const auto known = [&] { return watch.cameras().value_or(std::unexpected("not yet")); };
    const auto count = [&] {
        const auto cameras = known();
        return cameras ? std::ssize(*cameras) : -1;
    };
    ASSERT_TRUE(eventually([&] { return count() == 0; }));
    EXPECT_EQ(abilityOf(known()).whyNot, "There is no camera.");
    {
        const FakeCamera camera;
        ASSERT_TRUE(eventually([&] { return count() == 1; }));
        EXPECT_EQ(known().value().at(0), (CameraDevice{"test_camera", "Test camera", true}));
        EXPECT_TRUE(abilityOf(known()).isAvailable());
        EXPECT_FALSE(camera.isUsed());
    }
    ASSERT_TRUE(eventually([&] { return count() == 0; }));
    server->crash();
    server->start();
    const FakeCamera camera;
    EXPECT_TRUE(eventually([&] { return count() == 1; }));
    EXPECT_GE(changes, 4);
}

TEST_F(CameraPresence, ACameraThatNeverSendsAPictureHoldsUpTheStartForAMomentOnly) {
    FakeCamera camera(settingsOf(FakeCamera::Layout::yuyv));
    camera.setStalled(true);
    const auto before = base::hostNow();
    Recording recording(cameraOnly());
    EXPECT_LT(recording.began - before, 3s);
    ASSERT_TRUE(eventually([&] { return !missingIn(recording).empty(); }));
    EXPECT_THAT(missingIn(recording), ElementsAre("Camera: it sends no pictures"));
    recording.stop();
    EXPECT_FALSE(recording.metadata.hasWebcam);
    EXPECT_FALSE(std::filesystem::exists(webcamOf(recording)));
}

TEST_F(CameraPresence, ALateCameraShowsFromItsFirstPictureOn) {
    FakeCamera camera(settingsOf(FakeCamera::Layout::yuyv));
    camera.setStalled(true);
    Recording recording(cameraOnly());
    ASSERT_TRUE(recording.goesOnFor(500ms));
    camera.setStalled(false);
    ASSERT_TRUE(hasPictures(recording, 5));
    recording.stop();
    wholeWebcam(recording);
    EXPECT_GT(media::Asset::open(webcamOf(recording), media::TimeZero::fileZero)
                  .tracks(media::MediaType::video)
                  .at(0)
                  .timeRange.start.seconds(),
              0.45);
}

TEST_F(CameraPresence, PicturesThatStayAwayOrAreDamagedAreMissedUntilTheyReturn) {
    const struct {
        void (FakeCamera::*set)(bool);
        const char* told;
    } faults[]{{&FakeCamera::setStalled, "Camera: it sends no pictures"},
               {&FakeCamera::setDamaged, "Camera: it sends damaged pictures"}};
    for (const auto& fault : faults) {
        FakeCamera camera(settingsOf(FakeCamera::Layout::mjpeg));
        Recording recording(cameraOnly());
        ASSERT_TRUE(hasPictures(recording, 10));
        (camera.*fault.set)(true);
        ASSERT_TRUE(eventually([&] { return !missingIn(recording).empty(); }));
        EXPECT_THAT(missingIn(recording), ElementsAre(fault.told));
        (camera.*fault.set)(false);
        EXPECT_TRUE(hasPictures(recording, 10)) << fault.told;
        EXPECT_THAT(missingIn(recording), IsEmpty());
        recording.stop();
        const auto frames = wholeWebcam(recording);
        EXPECT_GE(frames.size(), 20U);
    }
}

TEST_F(CameraPresence, AnUnpluggedCameraIsTakenUpAgainAndNoneInItsPlace) {
    auto camera = std::make_unique<FakeCamera>(settingsOf(FakeCamera::Layout::nv12));
    auto otherSettings = settingsOf(FakeCamera::Layout::nv12);
    otherSettings.name = "other";
    otherSettings.priority = 1;
    FakeCamera other(otherSettings);
    Recording recording(cameraOnly());
    ASSERT_TRUE(hasPictures(recording, 10));
    camera.reset();
    ASSERT_TRUE(eventually([&] { return !missingIn(recording).empty(); }));
    EXPECT_THAT(missingIn(recording), ElementsAre("Camera: the camera is gone"));
    ASSERT_TRUE(recording.goesOnFor(1500ms));
    EXPECT_FALSE(other.isUsed());
    camera = std::make_unique<FakeCamera>(settingsOf(FakeCamera::Layout::nv12));
    EXPECT_TRUE(hasPictures(recording, 10));
    EXPECT_THAT(missingIn(recording), IsEmpty());
    recording.stop();
    EXPECT_GE(wholeWebcam(recording).size(), 20U);
}

TEST_F(CameraPresence, AnotherFormatInMidStreamGoesIntoTheSameMovie) {
    FakeCamera camera(settingsOf(FakeCamera::Layout::yuyv));
    camera.setWhite(true);
    Recording recording(cameraOnly());
    ASSERT_TRUE(hasPictures(recording, 5));
    camera.change({.layout = FakeCamera::Layout::rgb, .width = 320, .height = 240, .rate = 30});
    ASSERT_TRUE(eventually([&] { return camera.format().width == 320; }));
    EXPECT_TRUE(hasPictures(recording, 10));
    recording.stop();
    const auto frames = wholeWebcam(recording);
    EXPECT_EQ(frames.back().pixels->width(), 160);
    EXPECT_TRUE(isWhite(*frames.back().pixels));
}

TEST_F(CameraPresence, TheServerMayGoAndReturn) {
    auto camera = std::make_unique<FakeCamera>(settingsOf(FakeCamera::Layout::i420));
    Recording recording(cameraOnly());
    ASSERT_TRUE(hasPictures(recording, 10));
    server->crash();
    ASSERT_TRUE(eventually([&] { return !missingIn(recording).empty(); }));
    EXPECT_THAT(missingIn(recording), ElementsAre("Camera: PipeWire has gone"));
    camera.reset();
    server->start();
    camera = std::make_unique<FakeCamera>(settingsOf(FakeCamera::Layout::i420));
    EXPECT_TRUE(hasPictures(recording, 10));
    EXPECT_THAT(missingIn(recording), IsEmpty());
    recording.stop();
    EXPECT_GE(wholeWebcam(recording).size(), 20U);
}

} // namespace
} // namespace vantro::capture::camera
