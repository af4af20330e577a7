#pragma once

#include "render/software/AveragedRows.h"
#include "render/software/BilinearRows.h"

namespace vantro::render::software {

/// Draws rows of a stretched picture: one that shrinks much is averaged, any other mixed from the
/// nearest texels. Used as BilinearRows is.
class StretchedRows {
  public:
    void prepare(const SampleAxis& columnAxis, const SampleAxis& rowAxis, PixelSpan columns) {
        m_averages = columnAxis.averages() || rowAxis.averages();
        if (m_averages)
            m_averaged.prepare(columnAxis, rowAxis, columns);
        else
            m_bilinear.prepare(columnAxis, rowAxis, columns);
    }
    void setInput(BilinearRows::TexelRow texelRow) {
        if (m_averages)
            m_averaged.setInput(std::move(texelRow));
        else
            m_bilinear.setInput(std::move(texelRow));
    }
    PixelSpan texelColumns() const {
        return m_averages ? m_averaged.texelColumns() : m_bilinear.texelColumns();
    }
    void write(int row, std::uint8_t* out) {
        if (m_averages)
            m_averaged.write(row, out);
        else
            m_bilinear.write(row, out);
    }

  private:
    bool m_averages = false;
    BilinearRows m_bilinear;
    AveragedRows m_averaged;
};

} // namespace vantro::render::software
