#include "media/av/pictures/PictureScaler.h"

#include "media/values/MediaError.h"

namespace vantro::media::av {
namespace {

const int* coefficients(ColorMatrix matrix) {
    return sws_getCoefficients(matrix == ColorMatrix::bt601 ? SWS_CS_ITU601 : SWS_CS_ITU709);
}

} // namespace

PictureScaler::PictureScaler(int width, int height) : m_pool(PixelFormat::i420, width, height) {}

void PictureScaler::prepare(const PixelBuffer& source, int width, int height) {
    const bool isRgb = source.format() == PixelFormat::bgra;
    const bool shrinks = width < source.width();
    m_scaler.reset(sws_getCachedContext(m_scaler.release(), source.width(), source.height(),
                                        isRgb ? AV_PIX_FMT_BGRA : AV_PIX_FMT_YUV420P, width, height,
                                        AV_PIX_FMT_YUV420P, shrinks ? SWS_AREA : SWS_FAST_BILINEAR,
                                        nullptr, nullptr, nullptr));
    const auto color = source.color();
    if (!m_scaler ||
        sws_setColorspaceDetails(m_scaler.get(), coefficients(color.matrix),
                                 isRgb || color.fullRange ? 1 : 0, coefficients(ColorMatrix::bt709),
                                 0, 0, 1 << 16, 1 << 16) < 0)
        throw MediaError("Pictures of this kind cannot be scaled");
}

std::shared_ptr<const PixelBuffer> PictureScaler::scale(const PixelBuffer& source) {
    auto result = m_pool.take();
    prepare(source, result->width(), result->height());
    const std::uint8_t* from[PixelBuffer::maxPlanes]{};
    int fromStrides[PixelBuffer::maxPlanes]{};
    std::uint8_t* to[PixelBuffer::maxPlanes]{};
    int toStrides[PixelBuffer::maxPlanes]{};
    for (int plane = 0; plane < source.planeCount(); ++plane) {
        from[plane] = source.plane(plane);
        fromStrides[plane] = source.stride(plane);
    }
    for (int plane = 0; plane < result->planeCount(); ++plane) {
        to[plane] = result->mutableRow(plane, 0);
        toStrides[plane] = result->stride(plane);
    }
    if (sws_scale(m_scaler.get(), from, fromStrides, 0, source.height(), to, toStrides) <= 0)
        throw MediaError("Pictures of this kind cannot be scaled");
    return result;
}

} // namespace vantro::media::av
