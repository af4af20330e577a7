#pragma once

#include "media/values/PixelBuffer.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

namespace vantro::media::av {

/// The JPEG, PNG or WebP picture in a file's bytes as premultiplied bgra, upright, halved as long
/// as it stays at least `neededWidth` by `neededHeight` (0: never). Throws MediaError, in which
/// `path` stands.
std::shared_ptr<const PixelBuffer> decodePicture(const std::filesystem::path& path,
                                                 std::vector<std::uint8_t> bytes, int neededWidth,
                                                 int neededHeight);

/// The bgra pixels, taken as opaque, as a PNG file's bytes.
std::vector<std::uint8_t> encodePng(const PixelBuffer& picture);

} // namespace vantro::media::av
