#pragma once

#include "render/vulkan/Device.h"
#include "render/vulkan/Handle.h"

#include <cstdint>

namespace vantro::render::vulkan {

/// A picture in the GPU's own memory, with one view of the whole of it.
class Image {
  public:
    enum class Use {
        uploaded, ///< filled by copies, then sampled
        drawn,    ///< filled by a render pass, then sampled or copied from
    };
    enum class Content {
        color,  ///< four channels, blue first
        opaque, ///< the same with its alpha ignored
        plane,  ///< one channel, sampled as red
    };
    /// The format of colored pictures, which every render pass draws into.
    static constexpr VkFormat colorFormat = VK_FORMAT_B8G8R8A8_UNORM;

    Image() = default;
    /// Throws VulkanError where the device cannot hold such a picture.
    Image(const Device& device, Content content, int width, int height, Use use);

    VkImage get() const { return m_image.get(); }
    VkImageView view() const { return m_view.get(); }
    int width() const { return m_width; }
    int height() const { return m_height; }
    bool isSized(int width, int height) const { return m_width == width && m_height == height; }

  private:
    int m_width = 0;
    int m_height = 0;
    MemoryHandle m_memory;
    ImageHandle m_image;
    ImageViewHandle m_view;
};

} // namespace vantro::render::vulkan
