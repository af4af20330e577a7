#include "media/av/pictures/FrameConversion.h"

#include "media/values/MediaError.h"

#include <new>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace vantro::media::av {
namespace {

bool isFullRange(const AVFrame& frame) {
    return frame.color_range == AVCOL_RANGE_JPEG || frame.format == AV_PIX_FMT_YUVJ420P;
}

/// Untagged pictures follow the custom: high definition is BT.709, smaller ones BT.601.
AVColorSpace colorSpace(const AVFrame& frame) {
    if (frame.colorspace != AVCOL_SPC_UNSPECIFIED && frame.colorspace != AVCOL_SPC_RESERVED)
        return frame.colorspace;
    const bool highDefinition = frame.height > 576 || frame.width > 1024;
    return highDefinition ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
}

bool isBt601(AVColorSpace space) {
    return space == AVCOL_SPC_SMPTE170M || space == AVCOL_SPC_BT470BG;
}

std::shared_ptr<const PixelBuffer> handedOn(const AVFrame& frame) {
    std::shared_ptr<AVFrame> owner(av_frame_clone(&frame), HandleDeleter<av_frame_free>());
    if (!owner)
        throw std::bad_alloc();
    const std::uint8_t* planes[]{owner->data[0], owner->data[1], owner->data[2]};
    const int strides[]{owner->linesize[0], owner->linesize[1], owner->linesize[2]};
    const ColorDescription color{
        isBt601(colorSpace(frame)) ? ColorMatrix::bt601 : ColorMatrix::bt709, isFullRange(frame)};
    return PixelBuffer::wrap(PixelFormat::i420, frame.width, frame.height, planes, strides, color,
                             owner);
}

/// Straight alpha over black; what stays is opaque.
void layOverBlack(PixelBuffer& picture) {
    for (int y = 0; y < picture.height(); ++y) {
        std::uint8_t* pixel = picture.mutableRow(0, y);
        for (int x = 0; x < picture.width(); ++x, pixel += 4) {
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] = static_cast<std::uint8_t>((pixel[channel] * pixel[3] + 127) / 255);
            pixel[3] = 255;
        }
    }
}

} // namespace

AVPixelFormat formatWithoutRange(AVPixelFormat format) {
    switch (format) {
    case AV_PIX_FMT_YUVJ420P:
        return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P:
        return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ440P:
        return AV_PIX_FMT_YUV440P;
    case AV_PIX_FMT_YUVJ444P:
        return AV_PIX_FMT_YUV444P;
    default:
        return format;
    }
}

FrameConverter::FrameConverter(const AVStream& stream)
    : m_size(squarePixelSize(stream)), m_orientation(orientation(stream)) {}

bool FrameConverter::isHandedOn(const AVFrame& frame) const {
    const AVColorSpace space = colorSpace(frame);
    return formatWithoutRange(static_cast<AVPixelFormat>(frame.format)) == AV_PIX_FMT_YUV420P &&
           frame.width == m_size.width && frame.height == m_size.height &&
           m_orientation.isUpright() && (space == AVCOL_SPC_BT709 || isBt601(space));
}

std::shared_ptr<const PixelBuffer> FrameConverter::convert(const AVFrame& frame) {
    if (isHandedOn(frame))
        return handedOn(frame);
    auto picture = scaledToBgra(frame);
    return m_orientation.isUpright() ? picture : turnedUpright(*picture, m_orientation);
}

std::shared_ptr<PixelBuffer> FrameConverter::scaledToBgra(const AVFrame& frame) {
    const auto format = static_cast<AVPixelFormat>(frame.format);
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    m_scaler.reset(sws_getCachedContext(
        m_scaler.release(), frame.width, frame.height, formatWithoutRange(format), m_size.width,
        m_size.height, AV_PIX_FMT_BGRA, SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT,
        nullptr, nullptr, nullptr));
    if (!m_scaler || description == nullptr)
        throw MediaError("Pictures of this kind cannot be converted");
    const bool fullRange = isFullRange(frame) || formatWithoutRange(format) != format ||
                           (description->flags & AV_PIX_FMT_FLAG_RGB) != 0;
    sws_setColorspaceDetails(m_scaler.get(), sws_getCoefficients(colorSpace(frame)),
                             fullRange ? 1 : 0, sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16,
                             1 << 16);
    auto picture = PixelBuffer::allocate(PixelFormat::bgra, m_size.width, m_size.height);
    std::uint8_t* const destination[]{picture->mutableRow(0, 0), nullptr, nullptr, nullptr};
    const int strides[]{picture->stride(0), 0, 0, 0};
    if (sws_scale(m_scaler.get(), frame.data, frame.linesize, 0, frame.height, destination,
                  strides) <= 0)
        throw MediaError("Pictures of this kind cannot be converted");
    if ((description->flags & AV_PIX_FMT_FLAG_ALPHA) != 0)
        layOverBlack(*picture);
    return picture;
}

} // namespace vantro::media::av
