#pragma once

#include "archive/FilePart.h"

namespace vantro::archive {

/// Paths lead on into archives as into folders: where "film.vantro" is a file,
/// "film.vantro/recording.mov" is an entry of it. Throws ArchiveError where there is nothing, or
/// nothing that is stored as it is. Any thread.
FilePart locate(const std::filesystem::path& path);
/// Nothing instead of an error.
std::optional<FilePart> find(const std::filesystem::path& path);

} // namespace vantro::archive
