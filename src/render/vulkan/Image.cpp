#include "render/vulkan/Image.h"

#include "render/vulkan/VulkanError.h"

#include <algorithm>

#include <fmt/format.h>

namespace vantro::render::vulkan {
namespace {

VkImageUsageFlags usageFor(Image::Use use) {
    if (use == Image::Use::uploaded)
        return VK_IMAGE_USAGE_SAMPLED_BIT | VK_IMAGE_USAGE_TRANSFER_DST_BIT;
    return VK_IMAGE_USAGE_SAMPLED_BIT | VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT |
           VK_IMAGE_USAGE_TRANSFER_SRC_BIT;
}

VkFormat formatFor(Image::Content content) {
    const bool hasColor = content == Image::Content::color || content == Image::Content::opaque;
    return hasColor ? Image::colorFormat : VK_FORMAT_R8_UNORM;
}

VkImage createImage(const Device& device, VkFormat format, VkExtent3D extent, Image::Use use) {
    if (std::max(extent.width, extent.height) > device.largestImageSide())
        throw VulkanError(fmt::format("a picture of {} × {} is too large for the graphics device",
                                      extent.width, extent.height));
    VkImageCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO;
    info.imageType = VK_IMAGE_TYPE_2D;
    info.format = format;
    info.extent = extent;
    info.mipLevels = 1;
    info.arrayLayers = 1;
    info.samples = VK_SAMPLE_COUNT_1_BIT;
    info.tiling = VK_IMAGE_TILING_OPTIMAL;
    info.usage = usageFor(use);
    info.initialLayout = VK_IMAGE_LAYOUT_UNDEFINED;
    VkImage image = VK_NULL_HANDLE;
    check(vkCreateImage(device.get(), &info, nullptr, &image), "creating a texture");
    return image;
}

VkImageView createView(VkDevice device, VkImage image, Image::Content content) {
    VkImageViewCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_IMAGE_VIEW_CREATE_INFO;
    info.image = image;
    info.viewType = VK_IMAGE_VIEW_TYPE_2D;
    info.format = formatFor(content);
    if (content == Image::Content::opaque)
        info.components.a = VK_COMPONENT_SWIZZLE_ONE;
    info.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    VkImageView view = VK_NULL_HANDLE;
    check(vkCreateImageView(device, &info, nullptr, &view), "creating a texture's view");
    return view;
}

} // namespace

Image::Image(const Device& device, Content content, int width, int height, Use use)
    : m_width(width), m_height(height) {
    const VkExtent3D extent{static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height),
                            1};
    m_image = {device.get(), createImage(device, formatFor(content), extent, use)};
    VkMemoryRequirements needs{};
    vkGetImageMemoryRequirements(device.get(), m_image.get(), &needs);
    m_memory = {device.get(), device.allocate(needs, 0, VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT)};
    check(vkBindImageMemory(device.get(), m_image.get(), m_memory.get(), 0),
          "binding texture memory");
    m_view = {device.get(), createView(device.get(), m_image.get(), content)};
}

} // namespace vantro::render::vulkan
