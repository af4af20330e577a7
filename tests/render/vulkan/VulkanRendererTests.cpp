#include "render/TestScenes.h"
#include "render/vulkan/CheckedGpu.h"
#include "render/vulkan/VulkanRenderer.h"

#include <cstdlib>
#include <cstring>

#include <gmock/gmock.h>

namespace vantro::render::vulkan {
namespace {

/// A scene that is its source, pixel for pixel.
Scene copyOf(std::shared_ptr<const media::PixelBuffer> source) {
    const PixelSize size{source->width(), source->height()};
    SceneContent content;
    content.recording = std::move(source);
    return makeScene(size, content);
}

bool samePixels(const media::PixelBuffer& a, const media::PixelBuffer& b) {
    return a.width() == b.width() && a.height() == b.height() && test::largestDifference(a, b) == 0;
}

class VulkanRendererTest : public CheckedGpu {
  protected:
    std::shared_ptr<media::PixelBuffer> draw(const Scene& scene) {
        return test::drawn(*gpu, scene);
    }
};

TEST_F(VulkanRendererTest, TakesRecordingsAsOpaque) {
    const auto flat = [](std::uint8_t alpha) {
        return test::flatPicture(media::PixelFormat::bgra, 5, 5, {10, 20, 30, alpha});
    };
    EXPECT_TRUE(samePixels(*draw(copyOf(flat(0))), *flat(255)));
}

TEST_F(VulkanRendererTest, GivesUpForGoodWithOneLineWhenTheDeviceCannotHoldAFrame) {
    const auto source = test::screenPicture(media::PixelFormat::bgra, 8, 8, 1);
    Scene huge = copyOf(source);
    huge.canvas = {32768, 1};
    huge.recording.place = PixelRect::whole(huge.canvas);
    const auto output = media::PixelBuffer::allocate(media::PixelFormat::bgra, 32768, 1);
    testing::internal::CaptureStderr();
    const bool drewHuge = gpu->render(huge, *output);
    const bool drewAgain = gpu->render(huge, *output);
    const std::string logged = testing::internal::GetCapturedStderr();
    if (drewHuge)
        GTEST_SKIP() << "this device holds pictures of any size that we have";
    EXPECT_FALSE(drewAgain);
    EXPECT_THAT(logged, testing::HasSubstr("32768 × 1 is too large"));
    EXPECT_EQ(std::ranges::count(logged, '\n'), 1) << logged;
}

TEST(MakeVulkanRenderer, SaysSoWhereThereIsNoDriver) {
    const char* set = std::getenv("VK_ICD_FILENAMES"); // NOLINT(concurrency-mt-unsafe)
    const std::string before = set == nullptr ? "" : set;
    setenv("VK_ICD_FILENAMES", "/nonexistent.json", 1); // NOLINT(concurrency-mt-unsafe)
    const auto made = makeVulkanRenderer();
    setenv("VK_ICD_FILENAMES", before.c_str(), 1); // NOLINT(concurrency-mt-unsafe)
    ASSERT_FALSE(made.has_value());
    EXPECT_EQ(made.error(), "no Vulkan driver");
}

} // namespace
} // namespace vantro::render::vulkan
