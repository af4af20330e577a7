#pragma once

#include "media/values/AssetTrack.h"
#include "media/values/MovieReference.h"

#include <vector>

namespace vantro::media::av {

/// Opens the file to see what tracks it holds. Throws MediaError.
std::vector<AssetTrack> describeTracks(const MovieReference& movie);

} // namespace vantro::media::av
