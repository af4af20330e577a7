#include "render/vulkan/Device.h"

#include "render/vulkan/VulkanError.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace vantro::render::vulkan {
namespace {

DeviceKind kindOf(VkPhysicalDeviceType type) {
    switch (type) {
    case VK_PHYSICAL_DEVICE_TYPE_DISCRETE_GPU:
        return DeviceKind::discrete;
    case VK_PHYSICAL_DEVICE_TYPE_INTEGRATED_GPU:
        return DeviceKind::integrated;
    case VK_PHYSICAL_DEVICE_TYPE_VIRTUAL_GPU:
        return DeviceKind::virtualized;
    case VK_PHYSICAL_DEVICE_TYPE_CPU:
        return DeviceKind::software;
    default:
        return DeviceKind::unknown;
    }
}

std::vector<VkPhysicalDevice> physicalDevices(VkInstance instance) {
    std::uint32_t count = 0;
    check(vkEnumeratePhysicalDevices(instance, &count, nullptr), "listing graphics devices");
    std::vector<VkPhysicalDevice> devices(count);
    check(vkEnumeratePhysicalDevices(instance, &count, devices.data()), "listing graphics devices");
    return devices;
}

/// A queue family that draws and computes; every such family can copy too.
std::optional<std::uint32_t> drawingQueueFamily(VkPhysicalDevice device) {
    constexpr VkQueueFlags needed = VK_QUEUE_GRAPHICS_BIT | VK_QUEUE_COMPUTE_BIT;
    std::uint32_t count = 0;
    vkGetPhysicalDeviceQueueFamilyProperties(device, &count, nullptr);
    std::vector<VkQueueFamilyProperties> families(count);
    vkGetPhysicalDeviceQueueFamilyProperties(device, &count, families.data());
    for (std::uint32_t index = 0; index < count; ++index) {
        if ((families[index].queueFlags & needed) == needed)
            return index;
    }
    return std::nullopt;
}

DeviceCandidate candidateFrom(VkPhysicalDevice device, std::optional<std::uint32_t> queueFamily) {
    VkPhysicalDeviceProperties properties{};
    vkGetPhysicalDeviceProperties(device, &properties);
    const bool capable = properties.apiVersion >= VK_API_VERSION_1_1 && queueFamily.has_value();
    return {
        .name = properties.deviceName, .kind = kindOf(properties.deviceType), .capable = capable};
}

} // namespace

Device::Device(ValidationListener listener, bool allowSoftware) : m_instance(std::move(listener)) {
    const auto devices = physicalDevices(m_instance.get());
    std::vector<DeviceCandidate> candidates;
    std::vector<std::uint32_t> queueFamilies;
    for (VkPhysicalDevice device : devices) {
        const auto queueFamily = drawingQueueFamily(device);
        candidates.push_back(candidateFrom(device, queueFamily));
        queueFamilies.push_back(queueFamily.value_or(0));
    }
    const auto choice = chooseDevice(candidates, allowSoftware);
    if (!choice)
        throw VulkanError(choice.error());
    m_physical = devices[*choice];
    m_chosen = candidates[*choice];
    m_queueFamily = queueFamilies[*choice];
    VkPhysicalDeviceProperties properties{};
    vkGetPhysicalDeviceProperties(m_physical, &properties);
    m_limits = properties.limits;
    vkGetPhysicalDeviceMemoryProperties(m_physical, &m_memory);
    createDevice();
}

void Device::createDevice() {
    const float priority = 1;
    VkDeviceQueueCreateInfo queue{};
    queue.sType = VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO;
    queue.queueFamilyIndex = m_queueFamily;
    queue.queueCount = 1;
    queue.pQueuePriorities = &priority;
    VkDeviceCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO;
    info.queueCreateInfoCount = 1;
    info.pQueueCreateInfos = &queue;
    check(vkCreateDevice(m_physical, &info, nullptr, &m_device), "opening the graphics device");
    vkGetDeviceQueue(m_device, m_queueFamily, 0, &m_queue);
}

Device::~Device() {
    vkDestroyDevice(m_device, nullptr);
}

std::uint32_t Device::largestImageSide() const {
    return std::min({m_limits.maxImageDimension2D, m_limits.maxFramebufferWidth,
                     m_limits.maxFramebufferHeight, m_limits.maxViewportDimensions[0],
                     m_limits.maxViewportDimensions[1]});
}

VkDeviceMemory Device::allocate(const VkMemoryRequirements& needs, VkMemoryPropertyFlags required,
                                VkMemoryPropertyFlags preferred) const {
    for (const VkMemoryPropertyFlags wanted : {required | preferred, required}) {
        for (std::uint32_t type = 0; type < m_memory.memoryTypeCount; ++type) {
            const bool allowed = (needs.memoryTypeBits & (1U << type)) != 0;
            if (!allowed || (m_memory.memoryTypes[type].propertyFlags & wanted) != wanted)
                continue;
            VkMemoryAllocateInfo info{};
            info.sType = VK_STRUCTURE_TYPE_MEMORY_ALLOCATE_INFO;
            info.allocationSize = needs.size;
            info.memoryTypeIndex = type;
            VkDeviceMemory memory = VK_NULL_HANDLE;
            check(vkAllocateMemory(m_device, &info, nullptr, &memory), "allocating GPU memory");
            return memory;
        }
    }
    throw VulkanError("the graphics device has no memory of the needed kind");
}

void Device::waitIdle() const noexcept {
    vkDeviceWaitIdle(m_device);
}

} // namespace vantro::render::vulkan
