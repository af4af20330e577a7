// Who lets us have a camera, and who does not: PipeWire's own rules of access, and the genuine
// portal over a scripted desktop.
#include "capture/camera/CameraFixture.h"
#include "capture/camera/CameraPortal.h"
#include "support/WaylandDesk.h"

#include <sstream>

namespace vantro::capture::camera {
namespace {

TEST(CameraPortal, HandsOverTheCamerasOnceTheUserAllowsIt) {
    if (!WaylandDesk::isInstalled())
        GTEST_SKIP() << "its programs are not installed";
    WaylandDesk desk;
    const FakeCamera camera;
    desk.startPortal({.cameraAnswer = PortalScript::never});
    ASSERT_TRUE(eventually([] { return portalHasCamera(); }));
    const auto cameras = makePortalCameras(2s);
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

/// A rule of a PipeWire server that keeps this program out, and what is told of it.
struct AccessRule {
    const char* kind;
    const char* told;
};

class CameraAccess : public testing::TestWithParam<AccessRule> {};

INSTANTIATE_TEST_SUITE_P(, CameraAccess,
                         testing::Values(AccessRule{"rejected", "Camera: PipeWire denies access"},
                                         AccessRule{"restricted",
                                                    "Camera: PipeWire does not answer"}),
                         [](const auto& rule) { return rule.param.kind; });

TEST_P(CameraAccess, ThatIsNotGrantedLeavesTheScreen) {
    if (!SoundServer::isInstalled(SoundServer::Kind::pipewire))
        GTEST_SKIP() << "its programs are not installed";
    SoundServer server(SoundServer::Kind::pipewire);
    // Rules of access go by the name that a program was started by.
    std::string ourselves;
    std::getline(std::ifstream("/proc/self/cmdline"), ourselves, '\0');
    std::ifstream usual("/usr/share/pipewire/pipewire.conf");
    std::ostringstream text;
    text << usual.rdbuf();
    auto rules = text.str();
    const auto rule = std::string("access.") + GetParam().kind + " = [ ";
    ASSERT_NE(rules.find('#' + rule), std::string::npos);
    rules.replace(rules.find('#' + rule), rule.size() + 1, rule + ourselves + ' ');
    const std::filesystem::path config =
        std::getenv("XDG_CONFIG_HOME"); // NOLINT(concurrency-mt-unsafe)
    std::filesystem::create_directories(config / "pipewire");
    std::filesystem::create_directories(config / "wireplumber/main.lua.d");
    std::ofstream(config / "pipewire/pipewire.conf") << rules;
    std::ofstream(config / "wireplumber/main.lua.d/51-grant-nothing.lua")
        << "default_access.rules = {}\n";
    server.start();
    Recording recording(cameraOnly());
    EXPECT_THAT(missingIn(recording), testing::ElementsAre(GetParam().told));
    EXPECT_TRUE(isRecorded(recording));
    recording.stop();
    EXPECT_FALSE(recording.metadata.hasWebcam);
    EXPECT_GT(recording.metadata.endTime, 0.05);
}

} // namespace
} // namespace vantro::capture::camera
