#pragma once

#include <filesystem>
#include <optional>

namespace vantro::base {

/// The folder that an environment variable names; nothing unless that is an absolute path. Reads
/// the environment, which nothing here ever changes. Any thread.
std::optional<std::filesystem::path> folderFrom(const char* variable);

/// The folder that `variable` names (XDG_CACHE_HOME and the like), else `belowHome` in the home
/// folder; nothing where there is neither.
std::optional<std::filesystem::path> userFolder(const char* variable, const char* belowHome);

} // namespace vantro::base
