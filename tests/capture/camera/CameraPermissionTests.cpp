// Who lets us have a camera, and who does not: PipeWire's own rules of access, and the genuine
// portal over a scripted desktop.
#include "capture/camera/CameraFixture.h"
#include "capture/camera/CameraPortal.h"
#include "support/WaylandDesk.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace vantro::capture::camera {
namespace {

/// The permission store asks once for all.
TEST(CameraPortal, HandsOverTheCamerasOnceTheUserAllowsIt) {
    if (!WaylandDesk::isInstalled())
        GTEST_SKIP() << "its programs are not installed";
    WaylandDesk desk;
    const FakeCamera camera;
    desk.startPortal({.cameraAnswer = PortalScript::never});
    ASSERT_TRUE(eventually([] { return portalHasCamera(); }));
    const auto cameras = makePortalCameras(300ms);
    EXPECT_EQ(cameras->list()->size(), 1U);
    const auto late = cameras->open({});
    ASSERT_FALSE(late);
    EXPECT_EQ(late.error().reason, "nobody has allowed it in time");
    EXPECT_TRUE(eventually([&] { return desk.portal().log().withdrawn == 1; }));

    desk.portal().setScript({.cameraAnswer = PortalScript::grants});
    auto allowed = makePortalCameras(10s)->open("Test camera");
    ASSERT_TRUE(allowed) << allowed.error().reason;
    EXPECT_TRUE((*allowed)->awaitPicture(base::hostNow() + 10s));
}

TEST(CameraPortal, ARefusalIsToldAndTheScreenIsRecorded) {
    if (!WaylandDesk::isInstalled())
        GTEST_SKIP() << "its programs are not installed";
    WaylandDesk desk;
    const FakeCamera camera;
    desk.startPortal({.cameraAnswer = PortalScript::takesBack});
    ASSERT_TRUE(eventually([] { return portalHasCamera(); }));
    const auto refused = makePortalCameras(10s)->open({});
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().kind, CameraRefusal::Kind::denied);
    EXPECT_EQ(refused.error().reason, "access to it was denied");
    EXPECT_FALSE(camera.isUsed());
    desk.endPortal();
    EXPECT_FALSE(portalHasCamera());
    EXPECT_FALSE(makePortalCameras(1s)->open({}));
}

TEST(CameraAccess, APipeWireThatLetsUsNotInLeavesTheScreen) {
    if (!SoundServer::isInstalled(SoundServer::Kind::pipewire))
        GTEST_SKIP() << "its programs are not installed";
    SoundServer server(SoundServer::Kind::pipewire);
    // Rules of access go by the program's file.
    std::ifstream usual("/usr/share/pipewire/pipewire.conf");
    std::ostringstream text;
    text << usual.rdbuf();
    auto rules = text.str();
    const std::string before = "#access.rejected = [ ]";
    ASSERT_NE(rules.find(before), std::string::npos);
    rules.replace(rules.find(before), before.size(),
                  "access.rejected = [ " + std::filesystem::canonical("/proc/self/exe").string() +
                      " ]");
    const std::filesystem::path config =
        std::getenv("XDG_CONFIG_HOME"); // NOLINT(concurrency-mt-unsafe)
    std::filesystem::create_directories(config / "pipewire");
    std::ofstream(config / "pipewire/pipewire.conf") << rules;
    server.start();
    Recording recording(cameraOnly());
    EXPECT_THAT(missingIn(recording), testing::ElementsAre(testing::StartsWith("Camera: ")));
    std::cout << missingIn(recording).at(0) << "\n";
    EXPECT_TRUE(isRecorded(recording));
    recording.stop();
    EXPECT_FALSE(recording.metadata.hasWebcam);
    EXPECT_GT(recording.metadata.endTime, 0.05);
}

} // namespace
} // namespace vantro::capture::camera
