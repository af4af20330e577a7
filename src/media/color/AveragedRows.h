#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace vantro::media::color {

/// One axis of a picture that is drawn smaller: which of its texels make up a pixel. Pixel i is the
/// average over `width` texels around the place start + (i + 0.5) × step, where texel k spans k to
/// k + 1 and those at the edges are repeated beyond them.
struct AveragedAxis {
    double start = 0;
    double step = 1;
    double width = 1;
    int texels = 1;

    /// All of the picture over `pixels`; where it grows, a pixel is a mix of two texels.
    static AveragedAxis whole(int texels, int pixels);

    /// The texels of a pixel, at least one.
    int first(int pixel) const;
    int end(int pixel) const;
    /// A texel's share in a pixel.
    float share(int texel, int pixel) const;

  private:
    double begins(int pixel) const { return start + (pixel + 0.5) * step - width / 2; }
};

/// Draws rows of a shrunk BGRA picture. Texel rows are summed up first, which reads each of them
/// once or twice, and columns are mixed in the sum; exact up to the rounding of floats.
///
/// Reused for many pictures; its memory stays. One thread.
class AveragedRows {
  public:
    /// Gives texel row `y`, from column `texelBegin()` on. Stays valid until the next call.
    using TexelRow = std::function<const std::uint8_t*(int y)>;

    /// Chooses the output columns.
    void prepare(const AveragedAxis& columns, const AveragedAxis& rows, int firstColumn,
                 int endColumn);
    void setInput(TexelRow texelRow) { m_texelRow = std::move(texelRow); }

    int texelBegin() const { return m_texelBegin; }
    int texelEnd() const { return m_texelEnd; }
    /// Writes the pixels of output row `row`, exactly those of the prepared columns.
    void write(int row, std::uint8_t* out);

  private:
    AveragedAxis m_rows;
    int m_texelBegin = 0;
    int m_texelEnd = 0;
    int m_taps = 0;                    ///< texels to a pixel, along a row
    std::vector<std::int32_t> m_first; ///< of each column, from m_texelBegin
    std::vector<float> m_weights;
    std::vector<float> m_sums;
    TexelRow m_texelRow;
};

/// Draws all of a BGRA picture over `width` × `height` pixels: each is the average of the part that
/// it covers, or where the picture grows, a mix of its neighbors. Strides in bytes. Any thread.
void scalePicture(const std::uint8_t* pixels, std::ptrdiff_t stride, int sourceWidth,
                  int sourceHeight, std::uint8_t* destination, std::ptrdiff_t destinationStride,
                  int width, int height);

} // namespace vantro::media::color
