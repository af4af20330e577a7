#pragma once

#include <string>
#include <string_view>

namespace vantro::app::files {

/// A file name, without extension, for what the user calls `name`: nothing in it makes it a path,
/// a hidden file or too long for a file system. Never empty.
std::string safeFileName(std::string_view name);

} // namespace vantro::app::files
