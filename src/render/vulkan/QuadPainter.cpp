#include "render/vulkan/QuadPainter.h"

#include "base/Fatal.h"

#include <cstring>

namespace vantro::render::vulkan {
namespace {

// A frame's, and the conversion of the source.
constexpr std::size_t mostQuads = QuadList::capacity + 1;
constexpr std::size_t quadVertices = 6;
constexpr std::size_t quadBytes = quadVertices * sizeof(QuadVertex);

constexpr std::array<QuadVertex, quadVertices> wholeTarget{
    QuadVertex{-1, 1, 0, 0}, QuadVertex{1, 1, 1, 0},   QuadVertex{-1, -1, 0, 1},
    QuadVertex{1, 1, 1, 0},  QuadVertex{-1, -1, 0, 1}, QuadVertex{1, -1, 1, 1}};

} // namespace

QuadPainter::QuadPainter(const Context& context, Commands& commands)
    : m_context(context)
    , m_commands(commands)
    , m_vertices(context.device, MappedBuffer::Purpose::vertices, mostQuads * quadBytes) {}

void QuadPainter::beginPass(VkRenderPass pass, const RenderTarget& target) {
    const VkExtent2D extent{static_cast<std::uint32_t>(target.image().width()),
                            static_cast<std::uint32_t>(target.image().height())};
    const VkClearValue black{.color = {.float32 = {0, 0, 0, 1}}};
    VkRenderPassBeginInfo info{};
    info.sType = VK_STRUCTURE_TYPE_RENDER_PASS_BEGIN_INFO;
    info.renderPass = pass;
    info.framebuffer = target.framebuffer();
    info.renderArea = {{0, 0}, extent};
    info.clearValueCount = 1;
    info.pClearValues = &black;
    vkCmdBeginRenderPass(m_commands.get(), &info, VK_SUBPASS_CONTENTS_INLINE);
    const VkViewport viewport{
        0, 0, static_cast<float>(extent.width), static_cast<float>(extent.height), 0, 1};
    vkCmdSetViewport(m_commands.get(), 0, 1, &viewport);
    vkCmdSetScissor(m_commands.get(), 0, 1, &info.renderArea);
}

void QuadPainter::draw(const QuadDraw& quad, VkDescriptorSet picture) {
    drawQuad(m_context.pipelines.drawing(quad.pipeline), quad.vertices,
             std::as_bytes(std::span(&quad.uniforms, 1)), picture);
}

void QuadPainter::drawPlanes(const PlaneConversion& conversion, VkDescriptorSet planes) {
    drawQuad(m_context.pipelines.fromPlanes(), wholeTarget,
             std::as_bytes(std::span(&conversion, 1)), planes);
}

void QuadPainter::drawQuad(const Pipeline& pipeline, std::span<const QuadVertex> vertices,
                           std::span<const std::byte> uniforms, VkDescriptorSet bindings) {
    base::require(m_usedQuads < mostQuads, "too many quads in one frame");
    const VkDeviceSize offset = m_usedQuads++ * quadBytes;
    std::memcpy(m_vertices.data() + offset, vertices.data(), quadBytes);

    const VkCommandBuffer commands = m_commands.get();
    const VkBuffer buffer = m_vertices.get();
    vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, pipeline.handle.get());
    vkCmdBindVertexBuffers(commands, 0, 1, &buffer, &offset);
    vkCmdBindDescriptorSets(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, pipeline.layout.get(), 0, 1,
                            &bindings, 0, nullptr);
    vkCmdPushConstants(commands, pipeline.layout.get(), VK_SHADER_STAGE_FRAGMENT_BIT, 0,
                       static_cast<std::uint32_t>(uniforms.size()), uniforms.data());
    vkCmdDraw(commands, quadVertices, 1, 0, 0);
}

void QuadPainter::endPass() {
    vkCmdEndRenderPass(m_commands.get());
}

} // namespace vantro::render::vulkan
