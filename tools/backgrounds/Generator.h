#pragma once

#include "backgrounds/Catalog.h"

#include <filesystem>

namespace vantro::backgrounds {

/// Pixels of a picture to one of its thumbnail, in each direction.
constexpr int thumbnailShare = 10;

/// Paints `entry` and writes NAME.jpeg and Thumbnails/NAME.jpeg into `directory`, which is made if
/// missing. `frame` is at least `thumbnailShare` pixels wide and high. Errors are
/// std::filesystem_error.
void writeBackground(const Entry& entry, const Frame& frame, const std::filesystem::path& directory,
                     base::WorkerPool& pool);

} // namespace vantro::backgrounds
