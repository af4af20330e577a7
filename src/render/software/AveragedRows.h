#pragma once

#include "render/software/SampleAxis.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace vantro::render::software {

/// Draws rows of a shrunk picture, each pixel the average of what it covers: texel rows are summed
/// up first, which reads each of them once or twice, and columns are mixed in the sum.
///
/// Reused for many spans; its memory stays. One thread.
class AveragedRows {
  public:
    /// Gives texel row `y`, from the first column of `texelColumns()` on, readable for
    /// `columnOverread` pixels past the last of them. Stays valid until the next call.
    using TexelRow = std::function<const std::uint8_t*(int y)>;

    /// Chooses the output columns.
    void prepare(const SampleAxis& columnAxis, const SampleAxis& rowAxis, PixelSpan columns);
    void setInput(TexelRow texelRow) { m_texelRow = std::move(texelRow); }

    PixelSpan texelColumns() const { return m_texelColumns; }
    /// Writes the pixels of output row `row`, exactly those of the prepared columns.
    void write(int row, std::uint8_t* out);

  private:
    SampleAxis m_rowAxis;
    PixelSpan m_columns;
    PixelSpan m_texelColumns;
    int m_taps = 0; ///< texels to a pixel, along a row
    std::vector<std::int32_t> m_first;
    std::vector<float> m_weights;
    std::vector<float> m_sums;
    TexelRow m_texelRow;
};

} // namespace vantro::render::software
