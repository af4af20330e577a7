#pragma once

#include "render/scene/CursorImage.h"

#include <filesystem>

namespace vantro::render {

/// Reads a PNG or JPEG picture, told apart by its first bytes, as premultiplied BGRA. Nothing, and
/// one log line, for a file that cannot be read, is broken, or is larger than 16384 pixels a side
/// or 256 megapixels. Any thread.
ImagePointer loadImage(const std::filesystem::path& path);

/// Writes bgra or i420 pixels, taken as opaque, as a PNG: whole or not at all. Throws
/// std::filesystem::filesystem_error with the path. Any thread.
void writePng(const std::filesystem::path& path, const media::PixelBuffer& picture);

} // namespace vantro::render
