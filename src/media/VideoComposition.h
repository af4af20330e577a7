#pragma once

#include "media/values/MediaTime.h"
#include "media/values/VideoFrame.h"

#include <memory>

namespace vantro::media {

/// One frame that a video composition asks for.
struct CompositionRequest {
    MediaTime compositionTime;
    /// The latest source frame not after that time; without pixels where the track has none.
    VideoFrame sourceFrame;
    int width = 0; ///< output size, pixels
    int height = 0;
    PixelFormat outputFormat = PixelFormat::bgra;
    double renderScale = 1; ///< see VideoComposition
};

/// Makes the frames of a video composition.
/// Called for one frame at a time, in any order of times, on the reader's thread.
class VideoCompositor {
  public:
    virtual ~VideoCompositor() = default;

    /// Pixels of the asked size and format. May return the very pixels of an earlier frame when the
    /// picture is the same, or the source's where nothing is drawn. Throws VantroError.
    virtual std::shared_ptr<const PixelBuffer> compose(const CompositionRequest& request) = 0;
};

/// What a composition's video looks like: how often, how large, drawn by whom.
struct VideoComposition {
    int trackID = 0; ///< the composition's track that feeds the compositor
    MediaTime frameDuration{1, 60};
    int renderWidth = 0; ///< output size, pixels
    int renderHeight = 0;
    std::shared_ptr<VideoCompositor> compositor;
    /// Output pixels a pixel of the film: below 1 the compositor makes the same picture smaller.
    double renderScale = 1;

    /// Frames that fit into `duration`: each starts before its end.
    std::int64_t frameCount(MediaTime duration) const;
};

} // namespace vantro::media
