#pragma once

#include "media/FrameSource.h"
#include "model/Geometry.h"

#include <cstdint>
#include <expected>
#include <map>
#include <memory>
#include <optional>
#include <stop_token>

namespace vantro::media::changes {

/// A part of the picture that is watched for a while. Times are the movie's own.
struct Watch {
    double from = 0; ///< seconds
    double until = 0;
    model::Rect part; ///< fractions of the picture
};

/// How much of a part two pictures of one size show differently, 0 to 1. Looks at every third
/// pixel, and takes no note of what compression alone does.
double changedShare(const PixelBuffer& before, const PixelBuffer& after, const model::Rect& part);

/// Searches a movie for parts that begin to change. Decodes what lies around the watches and
/// nothing else, each picture once; holds a few of them. One thread.
class ChangeReader {
  public:
    /// Throws MediaError.
    ChangeReader(const Asset& asset, const AssetTrack& track);

    /// When the part changes in that time, having been calm just before, to a sixth of a second;
    /// nothing where it does not. Watches are best asked for in time order. Throws MediaError where
    /// the movie breaks; given up within one picture once `stop` says so.
    std::expected<std::optional<double>, NoFrame> firstChange(const Watch& watch,
                                                              const std::stop_token& stop);

  private:
    using Pixels = std::shared_ptr<const PixelBuffer>;
    std::expected<Pixels, NoFrame> pictureAt(std::int64_t step, const std::stop_token& stop);

    FrameSource m_source;
    std::map<std::int64_t, Pixels> m_latest; ///< watches that touch look at the same ones
};

} // namespace vantro::media::changes
