#include "render/vulkan/MappedBuffer.h"

#include "render/vulkan/VulkanError.h"

namespace vantro::render::vulkan {
namespace {

VkBufferUsageFlags usageFor(MappedBuffer::Purpose purpose) {
    switch (purpose) {
    case MappedBuffer::Purpose::upload:
        return VK_BUFFER_USAGE_TRANSFER_SRC_BIT;
    case MappedBuffer::Purpose::vertices:
        return VK_BUFFER_USAGE_VERTEX_BUFFER_BIT;
    case MappedBuffer::Purpose::readBack:
        return VK_BUFFER_USAGE_TRANSFER_DST_BIT | VK_BUFFER_USAGE_STORAGE_BUFFER_BIT;
    }
    return 0;
}

} // namespace

MappedBuffer::MappedBuffer(const Device& device, Purpose purpose, std::size_t size) : m_size(size) {
    VkBufferCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO;
    info.size = size;
    info.usage = usageFor(purpose);
    VkBuffer buffer = VK_NULL_HANDLE;
    check(vkCreateBuffer(device.get(), &info, nullptr, &buffer), "creating a buffer");
    m_buffer = {device.get(), buffer};

    VkMemoryRequirements needs{};
    vkGetBufferMemoryRequirements(device.get(), buffer, &needs);
    // Reading memory that the processor does not cache is some twenty times slower.
    const VkMemoryPropertyFlags preferred =
        purpose == Purpose::readBack ? VK_MEMORY_PROPERTY_HOST_CACHED_BIT : 0;
    m_memory = {device.get(), device.allocate(needs,
                                              VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT |
                                                  VK_MEMORY_PROPERTY_HOST_COHERENT_BIT,
                                              preferred)};
    check(vkBindBufferMemory(device.get(), buffer, m_memory.get(), 0), "binding buffer memory");
    void* data = nullptr;
    check(vkMapMemory(device.get(), m_memory.get(), 0, VK_WHOLE_SIZE, 0, &data), "mapping memory");
    m_data = static_cast<std::byte*>(data);
}

} // namespace vantro::render::vulkan
