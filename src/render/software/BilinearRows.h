#pragma once

#include "render/software/RowKernels.h"
#include "render/software/SampleAxis.h"

#include <array>
#include <functional>
#include <vector>

namespace vantro::render::software {

/// Draws rows of a stretched picture with bilinear sampling. Neighboring output rows share the
/// horizontally mixed texel rows, so going down a picture mixes each of those once.
///
/// Reused for many spans; its memory stays. One thread.
class BilinearRows {
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
    struct MixedRow {
        int texelRow = -1;
        std::vector<std::int16_t> words;
    };

    void buildTaps(const SampleAxis& axis);
    const MixedRow& mixedRow(int texelRow, int keep);

    SampleAxis m_rowAxis;
    PixelSpan m_columns;
    PixelSpan m_texelColumns;
    bool m_copiesColumns = false;
    ColumnTaps m_taps;
    std::vector<std::int32_t> m_bases;
    std::vector<std::int32_t> m_indices;
    std::vector<std::uint32_t> m_weights;
    std::array<MixedRow, 2> m_mixed;
    TexelRow m_texelRow;
};

} // namespace vantro::render::software
