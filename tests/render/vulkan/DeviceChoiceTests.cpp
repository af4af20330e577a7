#include "render/vulkan/DeviceChoice.h"

#include <vector>

#include <gmock/gmock.h>

namespace vantro::render::vulkan {
namespace {

DeviceCandidate device(std::string name, DeviceKind kind, bool capable = true) {
    return {.name = std::move(name), .kind = kind, .capable = capable};
}

TEST(DeviceChoice, PrefersRealHardwareInOrderOfSpeed) {
    const std::vector all{
        device("llvmpipe", DeviceKind::software), device("virtio", DeviceKind::virtualized),
        device("built in", DeviceKind::integrated), device("card", DeviceKind::discrete)};
    EXPECT_EQ(chooseDevice(all, true), 3U);
    EXPECT_EQ(chooseDevice(std::span(all).first(3), true), 2U);
    EXPECT_EQ(chooseDevice(std::span(all).first(2), true), 1U);
    // Among equals the driver's own order counts.
    const std::vector twins{device("a", DeviceKind::discrete), device("b", DeviceKind::discrete)};
    EXPECT_EQ(chooseDevice(twins, false), 0U);
}

TEST(DeviceChoice, TakesASoftwareDriverOnlyWhenAllowed) {
    const std::vector only{device("llvmpipe", DeviceKind::software)};
    EXPECT_EQ(chooseDevice(only, true), 0U);
    const auto refused = chooseDevice(only, false);
    ASSERT_FALSE(refused.has_value());
    EXPECT_EQ(refused.error(), "only software Vulkan (llvmpipe)");
}

} // namespace
} // namespace vantro::render::vulkan
