// The picture of the camera on the start screen.
#include "media/color/ColorConversion.h"
#include "window/WindowFixture.h"

namespace vantro::window {
namespace {

using namespace std::chrono_literals;
using test::Rgb;

/// What a test's cameras do, and what becomes of them.
struct Cameras {
    std::string refusal; ///< empty: they open
    int open = 0;
    std::vector<std::string> opened; ///< by what name
    capture::CameraOutput* output = nullptr;
};

/// A camera that sees what the test says.
class ScriptedCamera : public capture::CameraSource {
  public:
    explicit ScriptedCamera(Cameras& cameras) : m_cameras(cameras) { ++m_cameras.open; }
    ~ScriptedCamera() override {
        --m_cameras.open;
        m_cameras.output = nullptr;
    }
    bool awaitPicture(base::HostTime) override { return false; }
    void start(capture::CameraOutput& output) override { m_cameras.output = &output; }
    void stop() override { m_cameras.output = nullptr; }

  private:
    Cameras& m_cameras;
};

class CameraViewTest : public test::WindowFixture {
  protected:
    CameraViewTest() {
        openCamera = [this](const std::string& device) -> devices::CameraFeed::Camera {
            script.opened.push_back(device);
            if (!script.refusal.empty())
                return std::unexpected(capture::CameraRefusal{.reason = script.refusal});
            return std::make_unique<ScriptedCamera>(script);
        };
    }
    void switchOn() {
        showWindow();
        click("webcam");
        runTasks();
    }
    /// A picture whose halves have these colors.
    void see(Rgb left, Rgb right) {
        const auto bgra = media::PixelBuffer::allocate(media::PixelFormat::bgra, 640, 480);
        for (int y = 0; y < 480; ++y)
            for (int x = 0; x < 640; ++x) {
                const auto color = x < 320 ? left : right;
                auto* pixel = bgra->mutableRow(0, y) + static_cast<std::ptrdiff_t>(x) * 4;
                pixel[0] = static_cast<std::uint8_t>(color.blue);
                pixel[1] = static_cast<std::uint8_t>(color.green);
                pixel[2] = static_cast<std::uint8_t>(color.red);
                pixel[3] = 255;
            }
        const auto pixels = media::PixelBuffer::allocate(media::PixelFormat::i420, 640, 480);
        media::color::convertBgraToI420(*bgra, *pixels);
        time += 100ms;
        script.output->picture({.pixels = pixels, .time = time});
        settle();
    }
    /// The color shown at that part of the picture's width.
    Rgb shown(double part) { return test::rgbOf(colorAt(item("cameraPicture"), part)); }

    Cameras script;
    base::HostTime time = base::hostNow();
    const Rgb red{200, 30, 30};
    const Rgb blue{30, 30, 200};
    const Rgb green{30, 160, 30};
};

TEST_F(CameraViewTest, ShowsWhatTheCameraSeesAsTheFilmWillAndOnlyWhileItIsSwitchedOn) {
    switchOn();
    EXPECT_EQ(script.opened, std::vector<std::string>{""});
    see(red, blue);
    EXPECT_LT(test::distance(shown(0.25), red), 12);
    EXPECT_LT(test::distance(shown(0.75), blue), 12);
    see(green, blue);
    EXPECT_LT(test::distance(shown(0.25), green), 12);
    EXPECT_GT(window().height(), 200) << "the window makes room for it";
    cameras.setDevices({{QStringLiteral("a"), QStringLiteral("Built-in"), true},
                        {QStringLiteral("b"), QStringLiteral("On the desk")}});
    cameras.choose(2);
    runTasks();
    EXPECT_EQ(script.open, 1);
    EXPECT_EQ(script.opened.back(), "b");
    click("webcam");
    runTasks();
    EXPECT_EQ(script.open, 0);
    EXPECT_FALSE(shows("cameraPicture"));
    EXPECT_LT(window().height(), 200);
}

TEST_F(CameraViewTest, IsReleasedWhileTheWindowIsHiddenAndBeforeTheRecorderStarts) {
    switchOn();
    window().hide();
    runTasks();
    EXPECT_EQ(script.open, 0);
    window().show();
    runTasks();
    EXPECT_EQ(script.open, 1);
    state.setCaptureMode(model::CaptureMode::screen);
    recording.preparation().begin();
    tasks.runWork(); // the choice
    tasks.runMain();
    ASSERT_EQ(state.phase(), app::AppPhase::recording());
    tasks.runWork();
    EXPECT_EQ(script.open, 0);
    EXPECT_EQ(platform.next->starts, 0);
    tasks.runAll();
    EXPECT_EQ(platform.next->starts, 1);
    EXPECT_TRUE(platform.made.back().sources.camera);
}

TEST_F(CameraViewTest, SaysWhyThereIsNoPicture) {
    script.refusal = "the camera is used by another program";
    switchOn();
    EXPECT_EQ(text("cameraProblem"), "the camera is used by another program");
    script.refusal.clear();
    click("webcam");
    click("webcam");
    runTasks();
    EXPECT_FALSE(shows("cameraProblem"));
    see(red, red);
    script.output->cameraMissing("the camera is gone");
    runTasks();
    EXPECT_EQ(text("cameraProblem"), "the camera is gone");
    EXPECT_LT(test::distance(shown(0.02), {0, 0, 0}), 12) << "no old picture stays";
    script.output->cameraReturned();
    runTasks();
    see(blue, blue);
    EXPECT_LT(test::distance(shown(0.5), blue), 12);
}

} // namespace
} // namespace vantro::window
