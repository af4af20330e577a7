#pragma once

#include "render/vulkan/Device.h"
#include "render/vulkan/Handle.h"
#include "render/vulkan/Image.h"
#include "render/vulkan/MappedBuffer.h"

#include <cstddef>

namespace vantro::render::vulkan {

/// The one command buffer, recorded anew for each frame. begin → record → submitAndWait.
class Commands {
  public:
    explicit Commands(const Device& device);

    VkCommandBuffer get() const { return m_buffer; }
    void begin();
    /// Returns when the GPU has done all that was recorded.
    void submitAndWait();

    /// Fills the whole picture from rows that lie back to back, `offset` bytes into the buffer. The
    /// picture can then be sampled.
    void upload(const MappedBuffer& from, std::size_t offset, const Image& to);
    /// Writes the whole picture, which a pass has made ready for copying, as rows back to back.
    void download(const Image& from, const MappedBuffer& to);
    /// Lets the processor read what copies and compute shaders wrote before this point.
    void makeReadable(const MappedBuffer& buffer);

  private:
    VkDevice m_device;
    VkQueue m_queue;
    CommandPoolHandle m_pool;
    FenceHandle m_done;
    VkCommandBuffer m_buffer = VK_NULL_HANDLE;
};

} // namespace vantro::render::vulkan
