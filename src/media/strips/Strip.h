#pragma once

#include "media/values/MediaTime.h"
#include "media/values/PixelBuffer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

/// A movie's pictures and sound as a time line shows them: small pictures (thumbnails) and the
/// extremes of the sound (peaks). All times are the movie's own.
namespace vantro::media::strips {

/// What the thumbnails and the peaks of a movie take together, at most.
inline constexpr std::size_t mostBytes = 64'000'000;

/// Times of thumbnails lie on this grid, and on coarser ones that are powers of two of it, so that
/// a view magnified twice finds every other picture already there.
inline constexpr std::int32_t ticksPerSecond = 64;

inline MediaTime timeOf(std::int64_t tick) {
    return {tick, ticksPerSecond};
}

/// A picture of the movie, bgra, at its aspect.
struct Thumbnail {
    std::int64_t tick = 0;  ///< the time that was asked for
    std::int64_t shown = 0; ///< the picture's own, rounded up; or `tick` where it is the exact one
    std::shared_ptr<const PixelBuffer> pixels; ///< null where the movie has none there
};

/// The lowest and the highest sample of a stretch of sound; full scale is ±127.
struct Peak {
    std::int8_t low = 127;
    std::int8_t high = -127;

    /// Neither known to be silent nor loud.
    bool isUnknown() const { return low > high; }
    void include(Peak other) {
        low = std::min(low, other.low);
        high = std::max(high, other.high);
    }
    bool operator==(const Peak&) const = default;
};

/// Peaks of buckets that follow each other.
struct PeakPiece {
    std::int64_t firstBucket = 0;
    std::vector<Peak> peaks;
};

/// What a movie has to show. The first thing that is known of it.
struct StripFormat {
    double seconds = 0;      ///< of the whole movie
    int thumbnailWidth = 0;  ///< pixels; 0 without pictures
    int thumbnailHeight = 0; ///< pixels
    bool hasSound = false;
};

using StripNews = std::variant<StripFormat, Thumbnail, PeakPiece>;

/// What somebody looks at.
struct StripView {
    std::vector<std::int64_t> ticks; ///< thumbnails that are missing, the most wanted first
    std::int64_t tolerance = 0;      ///< ticks by which a picture may be earlier than asked for
    double from = 0;                 ///< seconds, where the sound that is seen begins
};

} // namespace vantro::media::strips
