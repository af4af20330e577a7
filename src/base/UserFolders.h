#pragma once

#include <filesystem>
#include <optional>

namespace vantro::base {

/// The folder that an environment variable names; nothing unless that is an absolute path. Reads
/// the environment, which nothing here ever changes. Any thread.
std::optional<std::filesystem::path> folderFrom(const char* variable);

/// A base folder of the XDG specification: `variable`, else `belowHome` in the home folder; nothing
/// where there is neither.
std::optional<std::filesystem::path> userFolder(const char* variable, const char* belowHome);

} // namespace vantro::base
