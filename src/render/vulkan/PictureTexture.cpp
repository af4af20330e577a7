#include "render/vulkan/PictureTexture.h"

#include "base/Fatal.h"

#include <cstring>

namespace vantro::render::vulkan {

void packRows(const PlanePixels& pixels, std::byte* destination) {
    if (pixels.stride == static_cast<std::ptrdiff_t>(pixels.rowBytes)) {
        std::memcpy(destination, pixels.first, pixels.bytes());
        return;
    }
    for (int y = 0; y < pixels.rows; ++y)
        std::memcpy(destination + static_cast<std::size_t>(y) * pixels.rowBytes,
                    pixels.first + y * pixels.stride, pixels.rowBytes);
}

void PictureTexture::hold(const Context& context, Commands& commands,
                          const std::shared_ptr<const media::PixelBuffer>& picture, bool opaque) {
    if (m_held == picture)
        return;
    base::require(picture->format() == media::PixelFormat::bgra, "a picture to draw is not bgra");
    send(context, commands, opaque ? Image::Content::opaque : Image::Content::color,
         picture->width(),
         {picture->plane(0), picture->stride(0), static_cast<std::size_t>(picture->width()) * 4,
          picture->height()});
    m_held = picture;
}

void PictureTexture::send(const Context& context, Commands& commands, Image::Content content,
                          int width, const PlanePixels& pixels) {
    if (!m_image.isSized(width, pixels.rows)) {
        m_image = Image(context.device, content, width, pixels.rows, Image::Use::uploaded);
        m_bindings = context.bindings.picture(m_image);
    }
    if (m_staging.size() < pixels.bytes())
        m_staging = MappedBuffer(context.device, MappedBuffer::Purpose::upload, pixels.bytes());
    packRows(pixels, m_staging.data());
    commands.upload(m_staging, 0, m_image);
}

void PictureTexture::frameDone() {
    if (m_changes == Changes::rarely)
        m_staging = {};
}

} // namespace vantro::render::vulkan
