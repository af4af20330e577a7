#include "render/vulkan/SourceTexture.h"

namespace vantro::render::vulkan {
namespace {

/// Planes begin at multiples of this many bytes, which every device can copy from quickly.
constexpr std::size_t planeAlignment = 256;

PlaneConversion conversionFor(media::ColorDescription color) {
    const double redShare = color.matrix == media::ColorMatrix::bt709 ? 0.2126 : 0.299;
    const double blueShare = color.matrix == media::ColorMatrix::bt709 ? 0.0722 : 0.114;
    const double greenShare = 1 - redShare - blueShare;
    const double redPerRed = 2 * (1 - redShare);
    const double bluePerBlue = 2 * (1 - blueShare);
    return {.lumaOffset = color.fullRange ? 0.0F : 16.0F / 255.0F,
            .lumaScale = color.fullRange ? 1.0F : 255.0F / 219.0F,
            .chromaScale = color.fullRange ? 1.0F : 255.0F / 224.0F,
            .chromaOffset = 128.0F / 255.0F,
            .redFromRed = static_cast<float>(redPerRed),
            .greenFromBlue = static_cast<float>(-bluePerBlue * blueShare / greenShare),
            .greenFromRed = static_cast<float>(-redPerRed * redShare / greenShare),
            .blueFromBlue = static_cast<float>(bluePerBlue)};
}

int planeWidth(const media::PixelBuffer& frame, int plane) {
    return plane == 0 ? frame.width() : (frame.width() + 1) / 2;
}

PlanePixels planePixels(const media::PixelBuffer& frame, int plane) {
    return {frame.plane(plane), frame.stride(plane),
            static_cast<std::size_t>(planeWidth(frame, plane)), frame.planeHeight(plane)};
}

std::size_t alignedBytes(const media::PixelBuffer& frame, int plane) {
    return (planePixels(frame, plane).bytes() + planeAlignment - 1) / planeAlignment *
           planeAlignment;
}

} // namespace

void SourceTexture::hold(const Context& context, Commands& commands, QuadPainter& painter,
                         const std::shared_ptr<const media::PixelBuffer>& frame) {
    m_planar = frame->format() == media::PixelFormat::i420;
    if (!m_planar) {
        m_picture.hold(context, commands, frame, true);
        return;
    }
    if (m_heldPlanes == frame)
        return;
    sendPlanes(context, commands, *frame);
    painter.beginPass(context.passes.thenSampled(), m_converted);
    painter.drawPlanes(conversionFor(frame->color()), m_planeBindings.get());
    painter.endPass();
    m_heldPlanes = frame;
}

void SourceTexture::sendPlanes(const Context& context, Commands& commands,
                               const media::PixelBuffer& frame) {
    if (!m_converted.isSized(frame.width(), frame.height())) {
        for (int plane = 0; plane < media::PixelBuffer::maxPlanes; ++plane)
            m_planes[plane] = Image(context.device, Image::Content::plane, planeWidth(frame, plane),
                                    frame.planeHeight(plane), Image::Use::uploaded);
        m_planeBindings = context.bindings.planes(m_planes[0], m_planes[1], m_planes[2]);
        m_converted = RenderTarget(context.device, context.bindings, context.passes, frame.width(),
                                   frame.height());
        const std::size_t bytes =
            alignedBytes(frame, 0) + alignedBytes(frame, 1) + alignedBytes(frame, 2);
        m_staging = MappedBuffer(context.device, MappedBuffer::Purpose::upload, bytes);
    }
    std::size_t offset = 0;
    for (int plane = 0; plane < media::PixelBuffer::maxPlanes; ++plane) {
        packRows(planePixels(frame, plane), m_staging.data() + offset);
        commands.upload(m_staging, offset, m_planes[plane]);
        offset += alignedBytes(frame, plane);
    }
}

} // namespace vantro::render::vulkan
