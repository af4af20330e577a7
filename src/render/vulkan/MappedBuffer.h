#pragma once

#include "render/vulkan/Device.h"
#include "render/vulkan/Handle.h"

#include <cstddef>

namespace vantro::render::vulkan {

/// Memory that the processor and the GPU both see, mapped for as long as it lives. Coherent: writes
/// need no flush.
class MappedBuffer {
  public:
    enum class Purpose {
        upload,   ///< the processor writes, the GPU copies from it
        vertices, ///< the processor writes, the GPU draws from it
        readBack, ///< the GPU writes, by copy or from a shader; the processor reads
    };

    MappedBuffer() = default;
    MappedBuffer(const Device& device, Purpose purpose, std::size_t size);

    VkBuffer get() const { return m_buffer.get(); }
    std::byte* data() const { return m_data; }
    std::size_t size() const { return m_size; }

  private:
    MemoryHandle m_memory;
    BufferHandle m_buffer;
    std::byte* m_data = nullptr;
    std::size_t m_size = 0;
};

} // namespace vantro::render::vulkan
