#pragma once

#include "media/values/PixelBuffer.h"

#include <cstddef>
#include <cstdint>

namespace vantro::media::color {

/// Conversion between bgra and i420 pixels with the processor's widest SIMD instructions.
///
/// Going to i420 is always BT.709 limited range; each chroma sample is the average of its 2×2 block
/// (center-sited), at odd edges of the pixels that are there. Going to bgra honors the source's
/// ColorDescription, interpolates chroma bilinearly between block centers and writes alpha 255.
/// Results lie within 1 of exact arithmetic. Reads and writes stay inside of the given pixels.
/// Thread-safety: any thread; different threads may fill different regions of one picture.

/// A region in pixels, y from the top.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const PixelRect&) const = default;
};

/// Whole picture; the sizes must be equal. Alpha is ignored.
void convertBgraToI420(const PixelBuffer& source, PixelBuffer& destination);

/// Fills `rect` of `destination` from pixels whose first one (the rectangle's top left corner) is
/// at `bgra` and whose rows are `stride` bytes apart. The rectangle lies inside of the picture,
/// with x and y even, and width and height even except where it reaches the picture's right or
/// lower edge.
void convertBgraRectToI420(const std::uint8_t* bgra, std::ptrdiff_t stride, PixelRect rect,
                           PixelBuffer& destination);

/// Two rows of `width` pixels into two luma rows and one row of (width + 1) / 2 chroma samples. For
/// a picture's last odd row pass the same row and the same luma row twice.
void bgraRowsToI420(const std::uint8_t* row0, const std::uint8_t* row1, int width, std::uint8_t* y0,
                    std::uint8_t* y1, std::uint8_t* u, std::uint8_t* v);

/// Whole picture; the sizes must be equal.
void convertI420ToBgra(const PixelBuffer& source, PixelBuffer& destination);

/// Writes the pixels of `rect`, which lies inside of the i420 picture and may begin and end at any
/// pixel, to rows `stride` bytes apart; the rectangle's top left corner goes to `destination`.
void i420RegionToBgra(const PixelBuffer& source, PixelRect rect, std::uint8_t* destination,
                      std::ptrdiff_t stride);

} // namespace vantro::media::color
