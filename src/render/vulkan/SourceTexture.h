#pragma once

#include "render/vulkan/PictureTexture.h"
#include "render/vulkan/QuadPainter.h"

#include <array>
#include <memory>

namespace vantro::render::vulkan {

/// The recording's frame on the GPU, as one color picture. Planar frames travel as planes, three
/// eighths of the bytes, and are converted there. A frame that is asked for again is not sent
/// again.
class SourceTexture {
  public:
    /// Records what brings the frame there; outside of passes.
    void hold(const Context& context, Commands& commands, QuadPainter& painter,
              const std::shared_ptr<const media::PixelBuffer>& frame);

    VkDescriptorSet bindings() const {
        return m_planar ? m_converted.bindings() : m_picture.bindings();
    }

  private:
    void sendPlanes(const Context& context, Commands& commands, const media::PixelBuffer& frame);

    PictureTexture m_picture{PictureTexture::Changes::often}; ///< where frames are bgra
    bool m_planar = false;
    std::shared_ptr<const media::PixelBuffer> m_heldPlanes;
    MappedBuffer m_staging;
    std::array<Image, media::PixelBuffer::maxPlanes> m_planes;
    BindingSet m_planeBindings;
    RenderTarget m_converted;
};

} // namespace vantro::render::vulkan
