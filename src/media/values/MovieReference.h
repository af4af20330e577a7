#pragma once

#include <filesystem>

namespace vantro::media {

/// What time zero of a movie is.
enum class TimeZero {
    firstSample, ///< where a player starts it: a movie that begins late is moved to the front
    fileZero,    ///< zero of the file's own times, for movies that share a recording's clock
};

/// A movie's file, and how its times are to be read.
struct MovieReference {
    std::filesystem::path path;
    TimeZero zero = TimeZero::firstSample;
};

} // namespace vantro::media
