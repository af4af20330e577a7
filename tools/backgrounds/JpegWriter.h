#pragma once

#include "backgrounds/Canvas.h"

#include <filesystem>

namespace vantro::backgrounds {

/// Writes `image` as a JPEG file with color at full resolution; `quality` is 1 to 100. The file
/// appears only when it is whole. Failure to write is a std::filesystem_error. Any thread.
void writeJpeg(const std::filesystem::path& path, const ByteImage& image, int quality);

} // namespace vantro::backgrounds
