#pragma once

#include "media/FrameSource.h"

#include <filesystem>
#include <stop_token>

namespace vantro::media::proxy {

/// Writes a small movie of what `source` shows in `range`: every picture, at its exact time from
/// the range's start on; the first one is what is shown there. `target` appears whole or not at
/// all; false when it was given up, which happens within one picture. Throws std::exception.
bool writePiece(FrameSource& source, MediaTimeRange range, const std::filesystem::path& target,
                const std::stop_token& givenUp);

} // namespace vantro::media::proxy
