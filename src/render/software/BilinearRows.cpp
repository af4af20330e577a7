#include "render/software/BilinearRows.h"

#include <cmath>
#include <cstring>

namespace vantro::render::software {
namespace {

/// A weight in 1/32768; the largest word stands for what would round up to 1.
std::int16_t inFixedPoint(double weight) {
    return static_cast<std::int16_t>(std::min(32767L, std::lround(weight * 32768)));
}

} // namespace

void BilinearRows::prepare(const SampleAxis& columnAxis, const SampleAxis& rowAxis,
                           PixelSpan columns) {
    m_rowAxis = rowAxis;
    m_columns = columns;
    m_texelColumns = columnAxis.taps(columns);
    // Clamping repeats texels, so a copy needs every column to have a texel of its own.
    m_copiesColumns =
        columnAxis.isCopy() && columnAxis.tap(columns.begin).first + columns.length() ==
                                   columnAxis.tap(columns.end - 1).first + 1;
    for (MixedRow& row : m_mixed)
        row.texelRow = -1;
    buildTaps(columnAxis);
}

void BilinearRows::buildTaps(const SampleAxis& axis) {
    const int lanes = blockPixels();
    const int blocks = (m_columns.length() + lanes - 1) / lanes;
    const auto padded = static_cast<std::size_t>(blocks) * static_cast<std::size_t>(lanes);
    m_bases.resize(static_cast<std::size_t>(blocks));
    m_indices.resize(padded);
    m_weights.resize(padded);
    int widest = 0;
    for (std::size_t i = 0; i < padded; ++i) {
        const int column = std::min(m_columns.begin + static_cast<int>(i), m_columns.end - 1);
        const auto tap = axis.tap(column);
        const int texel = tap.first - m_texelColumns.begin;
        const std::size_t block = i / static_cast<std::size_t>(lanes);
        if (i % static_cast<std::size_t>(lanes) == 0)
            m_bases[block] = texel;
        m_indices[i] = texel - m_bases[block];
        widest = std::max(widest, m_indices[i]);
        m_weights[i] = static_cast<std::uint32_t>(inFixedPoint(tap.weight)) * 0x10001U;
    }
    const TapReach reach = widest < lanes       ? TapReach::oneVector
                           : widest < 2 * lanes ? TapReach::twoVectors
                                                : TapReach::anywhere;
    m_taps = {reach, blocks, m_bases.data(), m_indices.data(), m_weights.data()};
    for (MixedRow& row : m_mixed)
        row.words.resize(padded * 4);
}

const BilinearRows::MixedRow& BilinearRows::mixedRow(int texelRow, int keep) {
    for (const MixedRow& row : m_mixed)
        if (row.texelRow == texelRow)
            return row;
    MixedRow& row = m_mixed[m_mixed[0].texelRow == keep ? 1 : 0];
    filterColumns(m_taps, m_texelRow(texelRow), row.words.data());
    row.texelRow = texelRow;
    return row;
}

void BilinearRows::write(int row, std::uint8_t* out) {
    const auto tap = m_rowAxis.tap(row);
    const auto weight = inFixedPoint(tap.weight);
    if (m_copiesColumns && weight == 0) {
        std::memcpy(out, m_texelRow(tap.first), static_cast<std::size_t>(m_columns.length()) * 4);
        return;
    }
    const int second = weight == 0 ? tap.first : tap.first + 1;
    const MixedRow& upper = mixedRow(tap.first, second);
    const MixedRow& lower = mixedRow(second, tap.first);
    mixRows(upper.words.data(), lower.words.data(), weight, m_columns.length(), out);
}

} // namespace vantro::render::software
