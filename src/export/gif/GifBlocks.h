#pragma once

#include "export/gif/Color.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace vantro::exporting::gif {

/// The parts of a GIF file, byte by byte; the numbers in them are little-endian.

using Bytes = std::vector<std::uint8_t>;

/// A region of the picture in pixels, y from the top.
struct Region {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

inline constexpr std::array<std::uint8_t, 1> fileTrailer{0x3B};

/// The fewest bits, at least 1, whose numbers count `colors` entries.
int tableBits(int colors);

/// Signature, screen size, global color table and the request to loop for ever.
Bytes fileHeader(int width, int height, std::span<const Color> table);

/// Everything of an image before its pixel data: its delay, still 0, its transparent index (none
/// below 0), its place and its own color table where that is not empty. What it covers stays in
/// place afterwards.
Bytes imageHeader(Region region, int transparent, std::span<const Color> table);

/// An image that changes nothing.
Bytes emptyImage();

/// Sets the delay of an image that imageHeader() begins, in hundredths of a second.
void setDelay(std::span<std::uint8_t> image, int hundredths);

} // namespace vantro::exporting::gif
