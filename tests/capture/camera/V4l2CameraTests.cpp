// Against a camera of the kernel, where this machine has one: the driver vivid of a virtual
// machine.
#include "capture/camera/DesktopCameras.h"
#include "capture/camera/V4l2Camera.h"
#include "capture/camera/V4l2Device.h"
#include "support/Eventually.h"
#include "support/SoundServer.h"

#include <vector>

#include <gmock/gmock.h>

namespace vantro::capture::camera {
namespace {

using namespace std::chrono_literals;
using test::eventually;

class PictureLog : public CameraOutput {
  public:
    std::vector<CameraPicture> pictures() const {
        return m_pictures.with([](const auto& all) { return all; });
    }

  private:
    void picture(const CameraPicture& picture) override {
        m_pictures.with([&](auto& all) { all.push_back(picture); });
    }
    void cameraMissing(const std::string& reason) override { ADD_FAILURE() << reason; }
    void cameraReturned() override {}

    base::Guarded<std::vector<CameraPicture>> m_pictures;
};

TEST(V4l2Camera, SendsSteadyPicturesOfTheNearestFormat) {
    if (systemCameras().empty())
        GTEST_SKIP() << "there is no camera";
    // A desktop without any server.
    const test::SoundServer nothing(test::SoundServer::Kind::pipewire);
    const auto cameras = makeDesktopCameras();
    const auto listed = cameras->list();
    ASSERT_TRUE(listed && !listed->empty());
    for (const auto& name : {std::string(), listed->back().name, listed->back().description}) {
        SCOPED_TRACE(name);
        auto camera = cameras->open(name);
        ASSERT_TRUE(camera) << camera.error().reason;
        EXPECT_TRUE((*camera)->awaitPicture(base::hostNow() + 5s));
        PictureLog log;
        (*camera)->start(log);
        EXPECT_TRUE(eventually([&] { return log.pictures().size() >= 20; }));
        (*camera)->stop();
        const auto pictures = log.pictures();
        EXPECT_EQ(pictures.front().pixels->width(), 640);
        EXPECT_EQ(pictures.front().pixels->height(), 480);
        for (std::size_t i = 1; i < pictures.size(); ++i)
            EXPECT_LT(pictures[i - 1].time, pictures[i].time);
        EXPECT_LT(base::hostNow() - pictures.back().time, 2s);
        const auto* middle = pictures.back().pixels->row(0, 60); // bars of many brightnesses
        EXPECT_GT(*std::max_element(middle, middle + 640) - *std::min_element(middle, middle + 640),
                  100);
    }
    EXPECT_EQ(cameras->open("no such").error().reason, "there is no no such");
}

} // namespace
} // namespace vantro::capture::camera
