#pragma once

#include "render/vulkan/Bindings.h"
#include "render/vulkan/Device.h"
#include "render/vulkan/Handle.h"
#include "render/vulkan/Image.h"

namespace vantro::render::vulkan {

/// Passes that clear one picture to opaque black, draw into it and store it. Both fit the same
/// pipelines; they differ in what the picture is ready for afterwards. Each waits for earlier work
/// that read the picture, and later work waits for it.
class RenderPasses {
  public:
    explicit RenderPasses(const Device& device);

    VkRenderPass thenSampled() const { return m_thenSampled.get(); }
    VkRenderPass thenCopied() const { return m_thenCopied.get(); }

  private:
    RenderPassHandle m_thenSampled;
    RenderPassHandle m_thenCopied;
};

/// A picture that passes draw into and shaders sample.
class RenderTarget {
  public:
    RenderTarget() = default;
    RenderTarget(const Device& device, const Bindings& bindings, const RenderPasses& passes,
                 int width, int height);

    const Image& image() const { return m_image; }
    VkDescriptorSet bindings() const { return m_bindings.get(); }
    VkFramebuffer framebuffer() const { return m_framebuffer.get(); }
    bool isSized(int width, int height) const { return m_image.isSized(width, height); }

  private:
    Image m_image;
    BindingSet m_bindings;
    FramebufferHandle m_framebuffer;
};

} // namespace vantro::render::vulkan
