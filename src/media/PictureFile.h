#pragma once

#include "media/values/PixelBuffer.h"

#include <filesystem>
#include <memory>

namespace vantro::media {

/// The size, in pixels, at which a picture will be shown; 0 for all it has.
struct PictureNeed {
    int width = 0;
    int height = 0;
};

/// Reads a JPEG, PNG or WebP picture, told apart by its first bytes, as premultiplied BGRA that
/// stands upright (EXIF). One with more than twice the pixels needed in both directions is halved
/// while it is read. Throws MediaError with path and reason for a file that cannot be read, is
/// damaged, or is larger than 16384 pixels a side, 100 megapixels or 256 MB. Any thread.
std::shared_ptr<const PixelBuffer> readPicture(const std::filesystem::path& path,
                                               PictureNeed need = {});

/// Writes bgra or i420 pixels, taken as opaque, as a PNG: whole or not at all. Throws
/// std::filesystem::filesystem_error with the path. Any thread.
void writePng(const std::filesystem::path& path, const PixelBuffer& picture);

} // namespace vantro::media
