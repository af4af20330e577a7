#pragma once

#include "media/VideoComposition.h"

#include <memory>
#include <optional>
#include <utility>

namespace vantro::media::player {

/// Composes pictures and fits them to the size in which they are shown. One thread, which is the
/// compositor's too.
class PictureComposer {
  public:
    explicit PictureComposer(VideoComposition video) : m_video(std::move(video)) {}

    void setVideo(VideoComposition video) { m_video = std::move(video); }
    /// Pictures are made smaller to fit, and never larger; 0 keeps their size.
    void setOutputSize(int width, int height);
    /// The picture at `time` over `source`, which the composition shows then. Equal pictures may be
    /// the same pixels. Throws as VideoCompositor does.
    std::shared_ptr<const PixelBuffer> compose(MediaTime time, MediaTime sourceTime,
                                               const VideoFrame& source);

  private:
    std::shared_ptr<const PixelBuffer> fitted(const std::shared_ptr<const PixelBuffer>& picture);

    VideoComposition m_video;
    int m_width = 0;
    int m_height = 0;
    std::shared_ptr<const PixelBuffer> m_composed; ///< the last one, before it was fitted
    std::shared_ptr<const PixelBuffer> m_fitted;
    std::optional<PixelBufferPool> m_pool; ///< of fitted pictures
    std::pair<int, int> m_poolSize;
};

} // namespace vantro::media::player
