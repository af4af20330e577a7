#pragma once

#include "model/Project.h"

#include <filesystem>

namespace vantro::app::files {

/// Whether a file of that name may be a movie from elsewhere: MP4, MOV, MKV or WebM.
bool hasMovieName(const std::filesystem::path& path);

/// Makes a recording without clicks, where recordings are made, of a movie from elsewhere, which is
/// linked or copied and stays as it is. Its bytes are kept under the name of a recording's movie
/// whatever their container is: that is told by what they are, not by a name. It is called like the
/// file. Throws VantroError projectOpenFailed. Any thread; blocks.
model::Project importMovie(const std::filesystem::path& movie);

} // namespace vantro::app::files
