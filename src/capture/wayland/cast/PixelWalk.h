#pragma once

#include "media/color/ColorConversion.h"
#include "pipewire/VideoBuffer.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace vantro::capture::wayland {

/// How to go through the memory of a buffer to see its picture upright: without what the sender has
/// cut off, and turned back from how its screen is mounted. A value.
struct PixelWalk {
    const std::uint8_t* first = nullptr; ///< the upright picture's top left pixel
    std::ptrdiff_t right = 0;            ///< bytes from a pixel to the one beside it
    std::ptrdiff_t down = 0;             ///< and to the one below
    int width = 0;                       ///< of the upright picture
    int height = 0;
};

/// Nothing for a buffer whose memory does not hold what its format promises, of which nothing is
/// left, or whose layout is none of `castLayouts`.
std::optional<PixelWalk> walkThrough(const pipewire::VideoBuffer& buffer);

/// A part of the upright picture, which lies inside of it.
PixelWalk partOf(const PixelWalk& walk, media::color::PixelRect part);

/// What `readRow` can read, the cheapest first.
std::vector<pipewire::Layout> castLayouts();

/// Writes a row of a picture to `bgrx`, four bytes a pixel.
void readRow(const PixelWalk& walk, pipewire::Layout layout, int y, std::uint8_t* bgrx);

/// Whether rows lie in memory as `readRow` would write them.
bool isBgrxInOrder(const PixelWalk& walk, pipewire::Layout layout);

} // namespace vantro::capture::wayland
