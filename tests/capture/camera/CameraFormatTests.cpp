#include "capture/camera/CameraFormat.h"

#include <vector>

#include <gmock/gmock.h>

namespace vantro::capture::camera {
namespace {

using enum media::RawLayout;

CameraFormat fixed(media::RawLayout layout, int width, int height, double rate) {
    return {.layout = layout,
            .width = width,
            .height = height,
            .mostWidth = width,
            .mostHeight = height,
            .rate = rate,
            .highestRate = rate};
}

TEST(CameraFormat, TheNearestFluentSizeAtTheHighestUsefulRateIsChosen) {
    const struct {
        const char* camera;
        std::vector<CameraFormat> offered;
        CameraFormat expected;
    } cases[]{
        {"an ordinary one",
         {fixed(yuyv, 1920, 1080, 5), fixed(mjpeg, 1920, 1080, 30), fixed(yuyv, 640, 480, 30),
          fixed(mjpeg, 640, 480, 30)},
         fixed(yuyv, 640, 480, 30)},
        {"one that is fast only when it compresses",
         {fixed(yuyv, 640, 480, 15), fixed(mjpeg, 640, 480, 30)},
         fixed(mjpeg, 640, 480, 30)},
        {"one whose wanted size stutters",
         {fixed(yuyv, 640, 480, 7.5), fixed(yuyv, 800, 600, 20)},
         fixed(yuyv, 800, 600, 20)},
        {"one that always stutters",
         {fixed(yuyv, 1600, 1200, 5), fixed(yuyv, 640, 480, 7.5)},
         fixed(yuyv, 640, 480, 7.5)},
        {"one that names its slowest rate first",
         {fixed(yuyv, 640, 480, 5), fixed(yuyv, 640, 480, 30), fixed(yuyv, 640, 480, 25)},
         fixed(yuyv, 640, 480, 30)},
        {"a high-speed one",
         {fixed(yuyv, 640, 480, 120), fixed(yuyv, 640, 480, 60), fixed(yuyv, 640, 480, 30)},
         fixed(yuyv, 640, 480, 60)},
        {"between half the size and twice it",
         {fixed(yuyv, 320, 240, 30), fixed(yuyv, 1280, 960, 30)},
         fixed(yuyv, 1280, 960, 30)},
        {"ranges",
         {{.layout = nv12,
           .width = 2,
           .height = 2,
           .mostWidth = 4096,
           .mostHeight = 4096,
           .rate = 1,
           .highestRate = 30}},
         fixed(nv12, 640, 480, 30)},
        {"impossible sizes",
         {fixed(yuyv, 0, 480, 30), fixed(gray, 33, 17, 0)},
         fixed(gray, 33, 17, 0)},
    };
    for (const auto& each : cases)
        EXPECT_EQ(chooseFormat(each.offered), each.expected) << each.camera;
    EXPECT_EQ(chooseFormat({}), std::nullopt);
}

} // namespace
} // namespace vantro::capture::camera
