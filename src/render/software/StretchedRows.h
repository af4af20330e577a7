#pragma once

#include "media/color/AveragedRows.h"
#include "render/software/BilinearRows.h"

namespace vantro::render::software {

/// Draws rows of a stretched picture: one that shrinks much is averaged, any other mixed from the
/// nearest texels. Used as BilinearRows is.
class StretchedRows {
  public:
    void prepare(const SampleAxis& columnAxis, const SampleAxis& rowAxis, PixelSpan columns) {
        m_averages = columnAxis.averages() || rowAxis.averages();
        if (m_averages)
            m_averaged.prepare(columnAxis.averaged(), rowAxis.averaged(), columns.begin,
                               columns.end);
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
        return m_averages ? PixelSpan{m_averaged.texelBegin(), m_averaged.texelEnd()}
                          : m_bilinear.texelColumns();
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
    media::color::AveragedRows m_averaged;
};

} // namespace vantro::render::software
