#pragma once

#include <stdexcept>
#include <string_view>

#include <vulkan/vulkan.h>

namespace vantro::render::vulkan {

/// A Vulkan call that failed. Thrown within the GPU renderer only, which turns it into its own
/// result and never lets it out.
class VulkanError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
    VulkanError(std::string_view call, VkResult result);
};

/// Throws unless `result` is success; `call` names what was tried.
void check(VkResult result, std::string_view call);

} // namespace vantro::render::vulkan
