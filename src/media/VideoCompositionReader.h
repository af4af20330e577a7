#pragma once

#include "media/Composition.h"
#include "media/VideoComposition.h"

#include <memory>
#include <optional>

namespace vantro::media {

/// Reads a composition's video as composed frames at a constant rate, in order.
///
/// Decoding runs ahead on a thread of the reader's own, bounded to a few frames; composing happens
/// in `copyNextFrame` on the caller's thread. One thread uses a reader; `cancel` may come from any.
class VideoCompositionReader {
  public:
    /// Opens the movie. Throws MediaError.
    VideoCompositionReader(const Composition& composition, VideoComposition videoComposition,
                           PixelFormat outputFormat);
    ~VideoCompositionReader();

    std::int64_t frameCount() const;
    /// The next composed frame; nothing after the last or after `cancel`. Throws MediaError where
    /// the movie breaks off or cannot be decoded, VantroError from the compositor.
    std::optional<VideoFrame> copyNextFrame();
    /// Makes a running and every later `copyNextFrame` return nothing soon.
    void cancel();

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::media
