#pragma once

#include "media/values/MediaTime.h"
#include "media/values/MovieReference.h"

#include <cstdint>
#include <optional>

namespace vantro::media::av {

/// Pictures that are decoded from one keyframe on.
struct PictureGroup {
    std::int64_t pictures = 0;
    MediaTime span; ///< from the keyframe to the last of them
};

/// The group of the most pictures in a video stream, as far as the file's index tells; nothing
/// where it has none. Decodes nothing. Throws MediaError.
std::optional<PictureGroup> longestGroup(const MovieReference& movie, int streamIndex);

} // namespace vantro::media::av
