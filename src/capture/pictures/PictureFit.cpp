#include "capture/pictures/PictureFit.h"

#include "media/color/AveragedRows.h"

#include <algorithm>
#include <cmath>

namespace vantro::capture::pictures {
namespace {

constexpr int channels = 4;

// Sizes are counted in whole points of a few pixels each and rounded to even: the first picture may
// be larger than the movie by less than this. Cutting that off beats scaling the whole picture.
constexpr int mostCutOff = 10; // pixels

} // namespace

PictureFit::PictureFit(int width, int height) : m_width(width), m_height(height) {}

PictureView PictureFit::fit(const PictureView& source, const TileMap& sourceChanged,
                            TileMap& changed) {
    const bool isNewSize = source.width != m_sourceWidth || source.height != m_sourceHeight;
    m_sourceWidth = source.width;
    m_sourceHeight = source.height;
    if (isNewSize)
        changed.addAll();
    if (isRightSize(source)) {
        sourceChanged.forEachRun([&](media::color::PixelRect run) { changed.add(run); });
        return source;
    }
    if (!sourceChanged.isEmpty())
        changed.addAll();
    return scaled(source);
}

bool PictureFit::isRightSize(const PictureView& source) {
    const auto isNear = [](int length, int wanted) {
        return length >= wanted && length < wanted + mostCutOff;
    };
    if (m_rightWidth == 0 && isNear(source.width, m_width) && isNear(source.height, m_height)) {
        m_rightWidth = source.width;
        m_rightHeight = source.height;
    }
    return source.width == m_rightWidth && source.height == m_rightHeight;
}

Fitting fitting(int sourceWidth, int sourceHeight, int width, int height) {
    const double scale = std::min(static_cast<double>(width) / sourceWidth,
                                  static_cast<double>(height) / sourceHeight);
    const auto fitted = [scale](int length, int limit) {
        return std::clamp(static_cast<int>(std::lround(length * scale)), 1, limit);
    };
    Fitting place{.width = fitted(sourceWidth, width), .height = fitted(sourceHeight, height)};
    place.x = (width - place.width) / 2;
    place.y = (height - place.height) / 2;
    return place;
}

PictureView PictureFit::scaled(const PictureView& source) {
    const Fitting place = fitting(source.width, source.height, m_width, m_height);
    const std::ptrdiff_t stride = std::ptrdiff_t{channels} * m_width;
    m_pixels.assign(static_cast<std::size_t>(stride * m_height), 0);
    auto* corner = m_pixels.data() + place.y * stride + std::ptrdiff_t{channels} * place.x;
    media::color::scalePicture(source.pixels, source.stride, source.width, source.height, corner,
                               stride, place.width, place.height);
    return {.pixels = m_pixels.data(), .stride = stride, .width = m_width, .height = m_height};
}

} // namespace vantro::capture::pictures
