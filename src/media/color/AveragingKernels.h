#pragma once

#include <cstdint>

namespace vantro::media::color {

/// The inner loops of pictures that shrink, compiled for each instruction set and chosen at run
/// time; all of them give the same bits. Pixels are BGRA, 4 bytes. Any thread.

/// Samples past the last that sumRow may write.
inline constexpr int sumOverrun = 16;

/// sums += or, for the first row, = row × weight, for `count` samples (four a pixel).
void sumRow(const std::uint8_t* row, float weight, bool isFirst, int count, float* sums);

/// Which pixels of a summed row make each pixel of the result.
struct ColumnWeights {
    int taps = 0;                        ///< to each result
    const std::int32_t* first = nullptr; ///< the leftmost of them
    const float* weights = nullptr;      ///< `taps` of them for each result
};

/// Mixes pixels along a summed row into `count` rounded pixels.
void mixColumns(const ColumnWeights& columns, const float* sums, int count, std::uint8_t* out);

} // namespace vantro::media::color
