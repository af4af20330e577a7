#pragma once

#include <cstdint>
#include <string_view>

namespace vantro::render::software {

/// The software renderer's inner loops, compiled for each instruction set and chosen at run time.
///
/// Pixels are BGRA, 4 bytes. Rows need no alignment. Any thread.

/// How far apart the pixels are that one block of results is made from.
enum class TapReach {
    oneVector,  ///< magnifying
    twoVectors, ///< shrinking to no less than half
    anywhere,
};

/// Which two neighboring pixels of a row make each pixel of the result. Results come in blocks of
/// blockPixels(); the arrays cover whole blocks.
struct ColumnTaps {
    TapReach reach = TapReach::oneVector;
    int blocks = 0;
    const std::int32_t* bases = nullptr;   ///< a block's first pixel
    const std::int32_t* indices = nullptr; ///< the left pixel of each result, counted from the base
    /// The right pixel's weight in 1/32768, twice in each word; 0 where there is no right pixel.
    const std::uint32_t* weights = nullptr;
};

/// Pixels past a row's last tap that filterColumns may read (and ignores).
inline constexpr int columnOverread = 40;

int blockPixels();

/// Mixes neighbors along a row into `out`: 4 words a pixel, with 7 fractional bits, in an order
/// that only mixRows knows.
void filterColumns(const ColumnTaps& taps, const std::uint8_t* row, std::int16_t* out);

/// Mixes two results of filterColumns into `count` pixels; `weight` is the lower row's share in
/// 1/32768.
void mixRows(const std::int16_t* upper, const std::int16_t* lower, std::int16_t weight, int count,
             std::uint8_t* out);

/// out = source + out × (1 − source alpha), for premultiplied source pixels.
void blendPremultiplied(const std::uint8_t* source, int count, std::uint8_t* out);

/// Lays black of the given alphas, 65536 for opaque, over `count` opaque pixels.
void darken(const std::uint16_t* alpha, int count, std::uint8_t* out);

/// The chosen instruction set, for people.
std::string_view kernelTarget();

} // namespace vantro::render::software
