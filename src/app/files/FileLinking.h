#pragma once

#include <filesystem>

namespace vantro::app::files {

/// Makes `target` hold the content of `source`: a hard link on the same file system, else a shared
/// or real copy. An earlier `target` is replaced in one step, so nothing half-written ever carries
/// its name. What lies in an archive is copied. Throws
/// std::filesystem::filesystem_error, and ArchiveError of an archive.
void linkOrCopy(const std::filesystem::path& source, const std::filesystem::path& target);

} // namespace vantro::app::files
