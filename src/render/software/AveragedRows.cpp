#include "render/software/AveragedRows.h"

#include "render/software/AveragingKernels.h"

namespace vantro::render::software {
namespace {

/// A texel's share of a reach; the first and last ones stand for all beyond the picture's edge.
float shareOf(int texel, const SampleAxis::Reach& reach, const SampleAxis& axis) {
    const double begin = texel == 0 ? reach.begin : std::max<double>(texel, reach.begin);
    const double end =
        texel == axis.texels - 1 ? reach.end : std::min<double>(texel + 1, reach.end);
    return static_cast<float>(std::max(0.0, end - begin) / (reach.end - reach.begin));
}

} // namespace

void AveragedRows::prepare(const SampleAxis& columnAxis, const SampleAxis& rowAxis,
                           PixelSpan columns) {
    m_rowAxis = rowAxis;
    m_columns = columns;
    m_texelColumns = columnAxis.taps(columns);
    m_taps = 0;
    for (int column = columns.begin; column < columns.end; ++column)
        m_taps = std::max(m_taps, columnAxis.touched(columnAxis.reach(column)).length());
    m_first.clear();
    m_weights.clear();
    for (int column = columns.begin; column < columns.end; ++column) {
        const auto reach = columnAxis.reach(column);
        const PixelSpan touched = columnAxis.touched(reach);
        m_first.push_back(touched.begin - m_texelColumns.begin);
        for (int i = 0; i < m_taps; ++i)
            m_weights.push_back(i < touched.length() ? shareOf(touched.begin + i, reach, columnAxis)
                                                     : 0);
    }
    // Taps of no weight may lie past the last column, where no sum is written.
    m_sums.assign((static_cast<std::size_t>(m_texelColumns.length() + m_taps) * 4) + sumOverrun, 0);
}

void AveragedRows::write(int row, std::uint8_t* out) {
    const auto reach = m_rowAxis.reach(row);
    const PixelSpan touched = m_rowAxis.touched(reach);
    for (int y = touched.begin; y < touched.end; ++y)
        sumRow(m_texelRow(y), shareOf(y, reach, m_rowAxis), y == touched.begin,
               m_texelColumns.length() * 4, m_sums.data());
    mixColumns({m_taps, m_first.data(), m_weights.data()}, m_sums.data(), m_columns.length(), out);
}

} // namespace vantro::render::software
