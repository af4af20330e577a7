#pragma once

#include "render/vulkan/Commands.h"
#include "render/vulkan/Context.h"
#include "render/vulkan/QuadPlan.h"

#include <array>
#include <cstddef>
#include <span>

namespace vantro::render::vulkan {

/// Records a frame's passes. Vertices go to a mapped buffer that lasts for the painter's life.
class QuadPainter {
  public:
    QuadPainter(const Context& context, Commands& commands);

    /// Call once a frame, when the GPU is done with the last one.
    void beginFrame() { m_usedQuads = 0; }

    /// Clears the target and opens a pass over the whole of it; what the target is ready for
    /// afterwards depends on the pass. Quads are then drawn into it until endPass.
    void beginPass(VkRenderPass pass, const RenderTarget& target);
    /// `picture` holds what the quad's shader samples.
    void draw(const QuadDraw& quad, VkDescriptorSet picture);
    /// Fills the target with the picture that `planes` make up.
    void drawPlanes(const PlaneConversion& conversion, VkDescriptorSet planes);
    void endPass();

  private:
    void drawQuad(const Pipeline& pipeline, std::span<const QuadVertex> vertices,
                  std::span<const std::byte> uniforms, VkDescriptorSet bindings);

    const Context& m_context;
    Commands& m_commands;
    MappedBuffer m_vertices;
    std::size_t m_usedQuads = 0;
};

} // namespace vantro::render::vulkan
