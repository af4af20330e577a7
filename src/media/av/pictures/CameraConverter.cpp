#include "media/av/pictures/CameraConverter.h"

#include "media/av/pictures/FrameConversion.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <cmath>
#include <cstring>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace vantro::media::av {
namespace {

bool isRgb(AVPixelFormat format) {
    return (av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

/// Cameras tell nothing of their colors: by custom JPEG and small pictures are BT.601, and those of
/// high definition are BT.709.
ColorDescription colorOf(const AVFrame& frame, AVPixelFormat format) {
    const bool isFull = frame.color_range == AVCOL_RANGE_JPEG || format != frame.format ||
                        format == AV_PIX_FMT_GRAY8;
    constexpr int highDefinition = 720;
    return {.matrix =
                !isFull && frame.height >= highDefinition ? ColorMatrix::bt709 : ColorMatrix::bt601,
            .fullRange = isFull};
}

void blacken(PixelBuffer& picture) {
    const bool isYuv = picture.format() == PixelFormat::i420;
    for (int plane = 0; plane < picture.planeCount(); ++plane) {
        const int value = !isYuv ? 0 : plane > 0 ? 128 : picture.color().fullRange ? 0 : 16;
        for (int y = 0; y < picture.planeHeight(plane); ++y)
            std::memset(picture.mutableRow(plane, y), value,
                        static_cast<std::size_t>(picture.stride(plane)));
    }
}

/// Where a picture of that size stands within another, as large as fits; all even.
struct Place {
    int x;
    int y;
    int width;
    int height;
};
Place placeWithin(int width, int height, int wholeWidth, int wholeHeight) {
    const double scale = std::min(static_cast<double>(wholeWidth) / width,
                                  static_cast<double>(wholeHeight) / height);
    const auto fitted = [scale](int length, int whole) {
        return std::clamp(static_cast<int>(std::lround(length * scale)) & ~1, 2, whole);
    };
    const int w = fitted(width, wholeWidth);
    const int h = fitted(height, wholeHeight);
    return {((wholeWidth - w) / 2) & ~1, ((wholeHeight - h) / 2) & ~1, w, h};
}

} // namespace

std::shared_ptr<const PixelBuffer> CameraConverter::convert(const RawPicture& raw) {
    if (raw.layout == RawLayout::mjpeg)
        return fit(m_decoder.decode(raw.planes[0].bytes));
    return fit(*copyPicture(raw));
}

std::shared_ptr<const PixelBuffer> CameraConverter::fit(const AVFrame& frame) {
    // An odd last row or column stays out.
    const int width = frame.width & ~1;
    const int height = frame.height & ~1;
    if (width < 2 || height < 2)
        throw MediaError("A picture has an impossible size");
    if (!m_size)
        m_size = {width, height};
    const auto format = formatWithoutRange(static_cast<AVPixelFormat>(frame.format));
    const auto color = colorOf(frame, format);
    const bool rgb = isRgb(format);
    auto picture = PixelBuffer::allocate(rgb ? PixelFormat::bgra : PixelFormat::i420, m_size->width,
                                         m_size->height, rgb ? ColorDescription{} : color);
    const auto place = placeWithin(width, height, m_size->width, m_size->height);
    if (place.width != picture->width() || place.height != picture->height())
        blacken(*picture);
    m_scaler.reset(sws_getCachedContext(m_scaler.release(), width, height, format, place.width,
                                        place.height, rgb ? AV_PIX_FMT_BGRA : AV_PIX_FMT_YUV420P,
                                        SWS_BILINEAR, nullptr, nullptr, nullptr));
    if (!m_scaler)
        throw MediaError("Pictures of this kind cannot be converted");
    // Range and matrix stay what they are: the buffer tells them.
    const int range = color.fullRange ? 1 : 0;
    sws_setColorspaceDetails(m_scaler.get(), sws_getCoefficients(SWS_CS_DEFAULT), range,
                             sws_getCoefficients(SWS_CS_DEFAULT), range, 0, 1 << 16, 1 << 16);
    std::uint8_t* to[4]{};
    int strides[4]{};
    for (int plane = 0; plane < picture->planeCount(); ++plane) {
        const int shift = plane == 0 ? 0 : 1;
        to[plane] =
            picture->mutableRow(plane, place.y >> shift) + (rgb ? 4 * place.x : place.x >> shift);
        strides[plane] = picture->stride(plane);
    }
    if (sws_scale(m_scaler.get(), frame.data, frame.linesize, 0, height, to, strides) <= 0)
        throw MediaError("Pictures of this kind cannot be converted");
    return picture;
}

} // namespace vantro::media::av
