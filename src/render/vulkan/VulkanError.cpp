#include "render/vulkan/VulkanError.h"

#include <fmt/format.h>

namespace vantro::render::vulkan {
namespace {

std::string describe(VkResult result) {
    switch (result) {
    case VK_ERROR_DEVICE_LOST:
        return "the device was lost";
    case VK_ERROR_OUT_OF_DEVICE_MEMORY:
        return "out of device memory";
    case VK_ERROR_OUT_OF_HOST_MEMORY:
        return "out of host memory";
    case VK_ERROR_INITIALIZATION_FAILED:
        return "initialization failed";
    default:
        return fmt::format("error {}", static_cast<int>(result));
    }
}

} // namespace

VulkanError::VulkanError(std::string_view call, VkResult result)
    : std::runtime_error(fmt::format("{}: {}", call, describe(result))) {}

void check(VkResult result, std::string_view call) {
    if (result != VK_SUCCESS)
        throw VulkanError(call, result);
}

} // namespace vantro::render::vulkan
