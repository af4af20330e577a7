#pragma once

#include "media/values/PixelBuffer.h"
#include "render/vulkan/Commands.h"
#include "render/vulkan/Context.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace vantro::render::vulkan {

/// One plane of samples in the processor's memory.
struct PlanePixels {
    const std::uint8_t* first = nullptr;
    std::ptrdiff_t stride = 0; ///< bytes
    std::size_t rowBytes = 0;
    int rows = 0;

    std::size_t bytes() const { return rowBytes * static_cast<std::size_t>(rows); }
};
/// Copies the rows back to back.
void packRows(const PlanePixels& pixels, std::byte* destination);

/// A picture kept on the GPU: it is sent there once and stays for as long as frames ask for the
/// same one. The pointer that was given is the picture's identity and is kept, so that it cannot
/// come to mean another picture.
class PictureTexture {
  public:
    enum class Changes {
        rarely, ///< the memory that it is sent through is given back
        often,  ///< that memory is kept for the next picture
    };
    explicit PictureTexture(Changes changes) : m_changes(changes) {}

    /// Records the upload of a bgra picture, unless it is the one held. It may be taken as opaque
    /// whatever its alpha says; one texture holds either kind only.
    void hold(const Context& context, Commands& commands,
              const std::shared_ptr<const media::PixelBuffer>& picture, bool opaque = false);
    /// Call when the GPU is done with the frame.
    void frameDone();

    VkDescriptorSet bindings() const { return m_bindings.get(); }

  private:
    void send(const Context& context, Commands& commands, Image::Content content, int width,
              const PlanePixels& pixels);

    Changes m_changes;
    std::shared_ptr<const void> m_held;
    MappedBuffer m_staging;
    Image m_image;
    BindingSet m_bindings;
};

} // namespace vantro::render::vulkan
