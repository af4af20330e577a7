#pragma once

#include "media/values/AssetTrack.h"

#include <filesystem>
#include <vector>

namespace vantro::media::av {

/// Opens the file to see what tracks it holds. Throws MediaError.
std::vector<AssetTrack> describeTracks(const std::filesystem::path& path);

} // namespace vantro::media::av
