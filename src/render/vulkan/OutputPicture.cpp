#include "render/vulkan/OutputPicture.h"

#include "render/vulkan/VulkanError.h"

#include <cstring>

namespace vantro::render::vulkan {
namespace {

// One invocation of the conversion makes 8 × 2 pixels; a group has 8 × 8 invocations.
constexpr int groupWidth = 64;
constexpr int groupHeight = 16;

/// Rows of whole words, with room for all that an invocation at the right edge stores.
PlaneLayout planeLayout(int width, int height) {
    const auto blocks = static_cast<std::uint32_t>((width + 7) / 8);
    const auto chromaRows = static_cast<std::uint32_t>((height + 1) / 2);
    const std::uint32_t lumaWords = blocks * 2 * static_cast<std::uint32_t>(height);
    return {.width = width,
            .height = height,
            .lumaStride = blocks * 2,
            .chromaStride = blocks,
            .blueOffset = lumaWords,
            .redOffset = lumaWords + blocks * chromaRows};
}

std::size_t returnedBytes(media::PixelFormat format, int width, int height) {
    if (format == media::PixelFormat::bgra)
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
    const PlaneLayout layout = planeLayout(width, height);
    return (std::size_t{2} * layout.redOffset - layout.blueOffset) * 4;
}

void unpackRows(const std::byte* source, std::size_t sourceStride, std::size_t rowBytes, int plane,
                media::PixelBuffer& output) {
    for (int y = 0; y < output.planeHeight(plane); ++y)
        std::memcpy(output.mutableRow(plane, y),
                    source + static_cast<std::size_t>(y) * sourceStride, rowBytes);
}

} // namespace

void OutputPicture::prepare(const Context& context, media::PixelFormat format, int width,
                            int height) {
    const bool sameSize = m_target.isSized(width, height);
    if (sameSize && m_format == format)
        return;
    if (!sameSize)
        m_target = RenderTarget(context.device, context.bindings, context.passes, width, height);
    m_format = format;
    const std::size_t bytes = returnedBytes(format, width, height);
    if (format == media::PixelFormat::i420 && bytes > context.device.largestShaderBuffer())
        throw VulkanError("the planes of a frame are too large for the graphics device");
    m_returned = MappedBuffer(context.device, MappedBuffer::Purpose::readBack, bytes);
    if (format == media::PixelFormat::i420)
        m_conversion = context.bindings.conversion(m_target.image(), m_returned);
}

VkRenderPass OutputPicture::pass(const Context& context) const {
    return m_format == media::PixelFormat::bgra ? context.passes.thenCopied()
                                                : context.passes.thenSampled();
}

void OutputPicture::recordReturn(const Context& context, Commands& commands) {
    if (m_format == media::PixelFormat::bgra)
        commands.download(m_target.image(), m_returned);
    else
        recordConversion(context, commands);
    commands.makeReadable(m_returned);
}

void OutputPicture::recordConversion(const Context& context, Commands& commands) {
    const int width = m_target.image().width();
    const int height = m_target.image().height();
    const Pipeline& pipeline = context.pipelines.toPlanes();
    const PlaneLayout layout = planeLayout(width, height);
    const VkDescriptorSet bindings = m_conversion.get();
    vkCmdBindPipeline(commands.get(), VK_PIPELINE_BIND_POINT_COMPUTE, pipeline.handle.get());
    vkCmdBindDescriptorSets(commands.get(), VK_PIPELINE_BIND_POINT_COMPUTE, pipeline.layout.get(),
                            0, 1, &bindings, 0, nullptr);
    vkCmdPushConstants(commands.get(), pipeline.layout.get(), VK_SHADER_STAGE_COMPUTE_BIT, 0,
                       sizeof(layout), &layout);
    vkCmdDispatch(commands.get(), static_cast<std::uint32_t>((width + groupWidth - 1) / groupWidth),
                  static_cast<std::uint32_t>((height + groupHeight - 1) / groupHeight), 1);
}

void OutputPicture::copyTo(media::PixelBuffer& output) const {
    const auto width = static_cast<std::size_t>(output.width());
    if (m_format == media::PixelFormat::bgra) {
        unpackRows(m_returned.data(), width * 4, width * 4, 0, output);
        return;
    }
    const PlaneLayout layout = planeLayout(output.width(), output.height());
    const std::byte* words = m_returned.data();
    const std::size_t chromaWidth = (width + 1) / 2;
    unpackRows(words, layout.lumaStride * 4UL, width, 0, output);
    unpackRows(words + layout.blueOffset * 4UL, layout.chromaStride * 4UL, chromaWidth, 1, output);
    unpackRows(words + layout.redOffset * 4UL, layout.chromaStride * 4UL, chromaWidth, 2, output);
}

} // namespace vantro::render::vulkan
