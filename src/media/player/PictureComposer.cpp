#include "media/player/PictureComposer.h"

namespace vantro::media::player {

void PictureComposer::setOutputSize(int width, int height) {
    m_width = width;
    m_height = height;
}

std::shared_ptr<const PixelBuffer> PictureComposer::compose(MediaTime time, MediaTime sourceTime,
                                                            const VideoFrame& source) {
    return m_video.compositor->compose({.compositionTime = time,
                                        .sourceTime = sourceTime,
                                        .sourceFrame = source,
                                        .width = m_video.renderWidth,
                                        .height = m_video.renderHeight,
                                        .outputFormat = PixelFormat::bgra,
                                        .renderScale = m_video.renderScale});
}

} // namespace vantro::media::player
