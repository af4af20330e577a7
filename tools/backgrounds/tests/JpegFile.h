#pragma once

#include "backgrounds/Canvas.h"

#include <filesystem>

namespace vantro::backgrounds {

/// The picture in a JPEG file, as decoders read it. Throws std::runtime_error where it is not there
/// or not whole.
ByteImage readJpeg(const std::filesystem::path& path);

} // namespace vantro::backgrounds
