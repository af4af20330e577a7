#include "render/vulkan/Commands.h"

#include "render/vulkan/VulkanError.h"

#include <limits>

namespace vantro::render::vulkan {
namespace {

CommandPoolHandle createPool(const Device& device) {
    VkCommandPoolCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO;
    info.queueFamilyIndex = device.queueFamily();
    VkCommandPool pool = VK_NULL_HANDLE;
    check(vkCreateCommandPool(device.get(), &info, nullptr, &pool), "creating the command pool");
    return {device.get(), pool};
}

FenceHandle createFence(VkDevice device) {
    VkFenceCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_FENCE_CREATE_INFO;
    VkFence fence = VK_NULL_HANDLE;
    check(vkCreateFence(device, &info, nullptr, &fence), "creating the frame's fence");
    return {device, fence};
}

VkBufferImageCopy wholePicture(const Image& image, std::size_t offset) {
    VkBufferImageCopy copy{};
    copy.bufferOffset = offset;
    copy.imageSubresource = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 0, 1};
    copy.imageExtent = {static_cast<std::uint32_t>(image.width()),
                        static_cast<std::uint32_t>(image.height()), 1};
    return copy;
}

VkImageMemoryBarrier layoutChange(const Image& image, VkImageLayout from, VkImageLayout to) {
    VkImageMemoryBarrier barrier{};
    barrier.sType = VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER;
    barrier.oldLayout = from;
    barrier.newLayout = to;
    barrier.srcQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED;
    barrier.dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED;
    barrier.image = image.get();
    barrier.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    return barrier;
}

} // namespace

Commands::Commands(const Device& device)
    : m_device(device.get())
    , m_queue(device.queue())
    , m_pool(createPool(device))
    , m_done(createFence(device.get())) {
    VkCommandBufferAllocateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO;
    info.commandPool = m_pool.get();
    info.level = VK_COMMAND_BUFFER_LEVEL_PRIMARY;
    info.commandBufferCount = 1;
    check(vkAllocateCommandBuffers(m_device, &info, &m_buffer), "taking a command buffer");
}

void Commands::begin() {
    check(vkResetCommandPool(m_device, m_pool.get(), 0), "emptying the command buffer");
    VkCommandBufferBeginInfo info{};
    info.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO;
    info.flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT;
    check(vkBeginCommandBuffer(m_buffer, &info), "beginning a frame");
}

void Commands::submitAndWait() {
    check(vkEndCommandBuffer(m_buffer), "ending a frame");
    VkSubmitInfo info{};
    info.sType = VK_STRUCTURE_TYPE_SUBMIT_INFO;
    info.commandBufferCount = 1;
    info.pCommandBuffers = &m_buffer;
    const VkFence done = m_done.get();
    check(vkResetFences(m_device, 1, &done), "resetting the frame's fence");
    check(vkQueueSubmit(m_queue, 1, &info, done), "submitting a frame");
    // No time limit: the driver itself reports a device that hangs as lost.
    check(vkWaitForFences(m_device, 1, &done, VK_TRUE, std::numeric_limits<std::uint64_t>::max()),
          "waiting for a frame");
}

void Commands::upload(const MappedBuffer& from, std::size_t offset, const Image& to) {
    VkImageMemoryBarrier before =
        layoutChange(to, VK_IMAGE_LAYOUT_UNDEFINED, VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL);
    before.dstAccessMask = VK_ACCESS_TRANSFER_WRITE_BIT;
    vkCmdPipelineBarrier(m_buffer, VK_PIPELINE_STAGE_TOP_OF_PIPE_BIT,
                         VK_PIPELINE_STAGE_TRANSFER_BIT, 0, 0, nullptr, 0, nullptr, 1, &before);
    const VkBufferImageCopy copy = wholePicture(to, offset);
    vkCmdCopyBufferToImage(m_buffer, from.get(), to.get(), VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL, 1,
                           &copy);
    VkImageMemoryBarrier after = layoutChange(to, VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL,
                                              VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL);
    after.srcAccessMask = VK_ACCESS_TRANSFER_WRITE_BIT;
    after.dstAccessMask = VK_ACCESS_SHADER_READ_BIT;
    vkCmdPipelineBarrier(m_buffer, VK_PIPELINE_STAGE_TRANSFER_BIT,
                         VK_PIPELINE_STAGE_FRAGMENT_SHADER_BIT, 0, 0, nullptr, 0, nullptr, 1,
                         &after);
}

void Commands::download(const Image& from, const MappedBuffer& to) {
    const VkBufferImageCopy copy = wholePicture(from, 0);
    vkCmdCopyImageToBuffer(m_buffer, from.get(), VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL, to.get(), 1,
                           &copy);
}

void Commands::makeReadable(const MappedBuffer& buffer) {
    VkBufferMemoryBarrier barrier{};
    barrier.sType = VK_STRUCTURE_TYPE_BUFFER_MEMORY_BARRIER;
    barrier.srcAccessMask = VK_ACCESS_TRANSFER_WRITE_BIT | VK_ACCESS_SHADER_WRITE_BIT;
    barrier.dstAccessMask = VK_ACCESS_HOST_READ_BIT;
    barrier.srcQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED;
    barrier.dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED;
    barrier.buffer = buffer.get();
    barrier.size = VK_WHOLE_SIZE;
    vkCmdPipelineBarrier(m_buffer,
                         VK_PIPELINE_STAGE_TRANSFER_BIT | VK_PIPELINE_STAGE_COMPUTE_SHADER_BIT,
                         VK_PIPELINE_STAGE_HOST_BIT, 0, 0, nullptr, 1, &barrier, 0, nullptr);
}

} // namespace vantro::render::vulkan
