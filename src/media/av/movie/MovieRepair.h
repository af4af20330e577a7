#pragma once

#include "media/values/MediaTime.h"

#include <filesystem>
#include <optional>

namespace vantro::media::av {

/// Gives the movie, in its place, the index that its journal tells of, and removes the journal.
/// Throws MediaError with path and reason. Blocks.
void repairMovie(const std::filesystem::path& movie, std::optional<MediaTime> endTime);

} // namespace vantro::media::av
