#pragma once

#include "media/FrameSource.h"
#include "media/av/pictures/PictureScaler.h"
#include "media/strips/Strip.h"

#include <functional>
#include <optional>

namespace vantro::media::strips {

/// Thumbnails' size, pixels, for a picture of that size: at most 80 high and 320 wide.
struct ThumbnailSize {
    int width = 0;
    int height = 0;

    static ThumbnailSize of(model::Size picture);
};

/// Finds a movie's pictures and makes them small. One thread.
class ThumbnailReader {
  public:
    /// Throws MediaError. `opened` is called once the file has been read, before there are threads
    /// that decode.
    ThumbnailReader(const Asset& asset, const AssetTrack& track,
                    const std::function<void()>& opened = {});

    /// The keyframe of a time, if it is at most `tolerance` ticks earlier, or more than half a
    /// minute: decoding that much for one small picture is too dear. Else the exact picture.
    /// Nothing when it was given up. Where the movie breaks it has none.
    std::optional<Thumbnail> read(std::int64_t tick, std::int64_t tolerance,
                                  const std::stop_token& givenUp);

  private:
    std::optional<Thumbnail> search(std::int64_t tick, std::int64_t tolerance,
                                    const std::stop_token& givenUp);
    std::optional<Thumbnail> exact(std::int64_t tick, const std::stop_token& givenUp);
    Thumbnail small(std::int64_t tick, std::int64_t shown, const VideoFrame& frame);

    FrameSource m_source;
    ThumbnailSize m_size;
    av::PictureScaler m_scaler;
    std::optional<std::int64_t> m_lastExact; ///< from where the movie can be decoded on
};

} // namespace vantro::media::strips
