#include "media/player/PictureComposer.h"

#include "media/color/AveragedRows.h"

#include <algorithm>
#include <cmath>

namespace vantro::media::player {
namespace {

/// `length` at `scale`; the wanted one where that is as good as equal, since both were rounded.
int fittedLength(int length, double scale, int wanted) {
    const double exact = length * scale;
    return std::abs(exact - wanted) < 2 ? wanted
                                        : std::max(static_cast<int>(std::lround(exact)), 1);
}

} // namespace

void PictureComposer::setOutputSize(int width, int height) {
    m_width = width;
    m_height = height;
    m_composed.reset();
}

std::shared_ptr<const PixelBuffer> PictureComposer::compose(MediaTime time, MediaTime sourceTime,
                                                            const VideoFrame& source) {
    auto composed = m_video.compositor->compose({.compositionTime = time,
                                                 .sourceTime = sourceTime,
                                                 .sourceFrame = source,
                                                 .width = m_video.renderWidth,
                                                 .height = m_video.renderHeight,
                                                 .outputFormat = PixelFormat::bgra,
                                                 .renderScale = m_video.renderScale});
    // Equal pixels are the same picture.
    if (composed != m_composed) {
        m_fitted = fitted(composed);
        m_composed = std::move(composed);
    }
    return m_fitted;
}

std::shared_ptr<const PixelBuffer>
PictureComposer::fitted(const std::shared_ptr<const PixelBuffer>& picture) {
    const double scale = std::min(static_cast<double>(m_width) / picture->width(),
                                  static_cast<double>(m_height) / picture->height());
    if (scale <= 0 || scale >= 1)
        return picture;
    const int width = fittedLength(picture->width(), scale, m_width);
    const int height = fittedLength(picture->height(), scale, m_height);
    if (!m_pool || m_poolSize != std::pair(width, height)) {
        m_pool.emplace(PixelFormat::bgra, width, height);
        m_poolSize = {width, height};
    }
    auto small = m_pool->take();
    color::scalePicture(picture->plane(0), picture->stride(0), picture->width(), picture->height(),
                        small->mutableRow(0, 0), small->stride(0), width, height);
    return small;
}

} // namespace vantro::media::player
