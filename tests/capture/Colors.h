#pragma once

#include "media/values/PixelBuffer.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace vantro::test {

/// What tests paint, 0xRRGGBB: far apart in brightness and color.
namespace colors {
inline constexpr std::uint32_t red = 0xd02010;
inline constexpr std::uint32_t green = 0x20b040;
inline constexpr std::uint32_t blue = 0x1030e0;
inline constexpr std::uint32_t black = 0x000000;
inline constexpr std::uint32_t white = 0xffffff;
} // namespace colors

struct Yuv {
    double y;
    double u;
    double v;
};

/// BT.709 limited range, from the standard's definition. `color` is 0xRRGGBB.
inline Yuv yuvOf(std::uint32_t color) {
    const double red = ((color >> 16) & 255) / 255.0;
    const double green = ((color >> 8) & 255) / 255.0;
    const double blue = (color & 255) / 255.0;
    const double luma = 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    return {16 + 219 * luma, 128 + 224 * (blue - luma) / 1.8556, 128 + 224 * (red - luma) / 1.5748};
}

/// Whether an i420 picture has this color at a pixel, give or take `tolerance` of 255 levels.
inline bool hasColor(const media::PixelBuffer& picture, int x, int y, std::uint32_t color,
                     double tolerance = 1.5) {
    const Yuv wanted = yuvOf(color);
    const int chromaX = x / 2;
    const int chromaY = y / 2;
    return std::abs(picture.row(0, y)[x] - wanted.y) <= tolerance &&
           std::abs(picture.row(1, chromaY)[chromaX] - wanted.u) <= tolerance &&
           std::abs(picture.row(2, chromaY)[chromaX] - wanted.v) <= tolerance;
}

} // namespace vantro::test
