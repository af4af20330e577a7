#pragma once

#include "archive/FilePart.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace vantro::media::av {

/// Sends the libraries' own error lines to our log as information and keeps everything else off
/// standard error. Any thread, any number of times.
void prepareLibraries();

/// The text for a libav error code, for example "No space left on device".
std::string errorText(int code);

/// The last error line that a library logged on this thread since the call before; it often says
/// more than the code does. Empty when there was none.
std::string takeLastErrorLine();

/// Throws MediaError "<what> <path>: <reason>".
[[noreturn]] void fail(std::string_view what, const std::filesystem::path& path,
                       std::string_view reason);

/// As libav wants a file's name: never taken for another protocol's address.
std::string fileUrl(const std::filesystem::path& path);
/// Of a part of a file it is read as if there were nothing else.
std::string fileUrl(const archive::FilePart& part);

} // namespace vantro::media::av
