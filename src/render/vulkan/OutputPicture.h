#pragma once

#include "media/values/PixelBuffer.h"
#include "render/vulkan/Commands.h"
#include "render/vulkan/Context.h"

namespace vantro::render::vulkan {

/// The finished frame: drawn on the GPU, brought back as color or, for half the bytes, as planes.
class OutputPicture {
  public:
    /// Makes ready for frames of this shape; costs nothing while the shape stays.
    void prepare(const Context& context, media::PixelFormat format, int width, int height);

    /// The pass to draw with, and its target.
    VkRenderPass pass(const Context& context) const;
    const RenderTarget& target() const { return m_target; }
    /// Records the way back; after the pass.
    void recordReturn(const Context& context, Commands& commands);
    /// Call when the GPU is done with the frame.
    void copyTo(media::PixelBuffer& output) const;

  private:
    void recordConversion(const Context& context, Commands& commands);

    media::PixelFormat m_format = media::PixelFormat::bgra;
    RenderTarget m_target;
    MappedBuffer m_returned;
    BindingSet m_conversion;
};

} // namespace vantro::render::vulkan
