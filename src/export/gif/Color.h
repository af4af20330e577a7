#pragma once

#include <cstdint>
#include <vector>

namespace vantro::exporting::gif {

/// A color as 0x00RRGGBB: a bgra pixel read as a little-endian word, without its alpha.
using Color = std::uint32_t;

inline constexpr Color colorMask = 0x00FFFFFF;

/// At most `maxColors` colors; one index of a table stays free for transparency.
using Palette = std::vector<Color>;
inline constexpr int maxColors = 255;
inline constexpr std::uint8_t transparentIndex = 255;

inline int red(Color color) {
    return static_cast<int>(color >> 16 & 0xFF);
}
inline int green(Color color) {
    return static_cast<int>(color >> 8 & 0xFF);
}
inline int blue(Color color) {
    return static_cast<int>(color & 0xFF);
}

// How much a difference in each channel is seen. Small integers, so that distances are exact in
// single precision whatever the instruction set.
inline constexpr int redWeight = 3;
inline constexpr int greenWeight = 4;
inline constexpr int blueWeight = 2;

/// The distance of two grays that are `levels` of 255 apart; what distance() is compared with.
constexpr int grayDistance(int levels) {
    return (redWeight + greenWeight + blueWeight) * levels * levels;
}

/// Weighted square of the difference.
inline int distance(Color a, Color b) {
    const int dr = red(a) - red(b);
    const int dg = green(a) - green(b);
    const int db = blue(a) - blue(b);
    return redWeight * dr * dr + greenWeight * dg * dg + blueWeight * db * db;
}

} // namespace vantro::exporting::gif
