#pragma once

#include <filesystem>
#include <vector>

namespace vantro::test {

/// Writes a theme's cursor file with a bitmap for each nominal size, one and a half times as large
/// as that, in one premultiplied color (blue 16 + size, green 32, red 64, alpha 128); the hot spot
/// lies at a quarter and an eighth of the nominal size. False when it cannot.
bool writeCursorFile(const std::filesystem::path& path, const std::vector<unsigned>& sizes);

} // namespace vantro::test
