#pragma once

#include "render/vulkan/DeviceChoice.h"
#include "render/vulkan/Instance.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace vantro::render::vulkan {

/// One graphics device with one queue that draws, computes and copies. Must outlive all that it
/// makes. Calls that can fail throw VulkanError.
class Device {
  public:
    /// Takes the best device there is; throws where there is none that may be used.
    Device(ValidationListener listener, bool allowSoftware);
    ~Device();
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    VkDevice get() const { return m_device; }
    VkQueue queue() const { return m_queue; }
    std::uint32_t queueFamily() const { return m_queueFamily; }
    const DeviceCandidate& chosen() const { return m_chosen; }
    /// The longest side of a picture that can be drawn into, pixels.
    std::uint32_t largestImageSide() const;
    /// The most bytes that a shader can write to one buffer.
    std::size_t largestShaderBuffer() const { return m_limits.maxStorageBufferRange; }

    /// Memory of one of the allowed types that has all `required` properties, and the `preferred`
    /// ones where it can be had.
    VkDeviceMemory allocate(const VkMemoryRequirements& needs, VkMemoryPropertyFlags required,
                            VkMemoryPropertyFlags preferred) const;
    void waitIdle() const noexcept;

  private:
    void createDevice();

    Instance m_instance;
    VkPhysicalDevice m_physical = VK_NULL_HANDLE;
    DeviceCandidate m_chosen;
    std::uint32_t m_queueFamily = 0;
    VkPhysicalDeviceLimits m_limits{};
    VkPhysicalDeviceMemoryProperties m_memory{};
    VkDevice m_device = VK_NULL_HANDLE;
    VkQueue m_queue = VK_NULL_HANDLE;
};

} // namespace vantro::render::vulkan
