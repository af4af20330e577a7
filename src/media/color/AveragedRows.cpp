#include "media/color/AveragedRows.h"

#include "media/color/AveragingKernels.h"

#include <algorithm>
#include <cmath>

namespace vantro::media::color {
namespace {

/// As an index within [low, high]; what is not a number becomes `low`.
int clampedIndex(double value, int low, int high) {
    return value > low ? static_cast<int>(std::min<double>(value, high)) : low;
}

} // namespace

AveragedAxis AveragedAxis::whole(int texels, int pixels) {
    const double step = static_cast<double>(texels) / pixels;
    return {.start = 0, .step = step, .width = std::max(step, 1.0), .texels = texels};
}

int AveragedAxis::first(int pixel) const {
    return clampedIndex(std::floor(begins(pixel)), 0, texels - 1);
}

int AveragedAxis::end(int pixel) const {
    return clampedIndex(std::ceil(begins(pixel) + width), first(pixel) + 1, texels);
}

float AveragedAxis::share(int texel, int pixel) const {
    const double from = begins(pixel);
    const double to = from + width;
    const double begin = texel == 0 ? from : std::max<double>(texel, from);
    const double finish = texel == texels - 1 ? to : std::min<double>(texel + 1, to);
    return static_cast<float>(std::max(0.0, finish - begin) / width);
}

void AveragedRows::prepare(const AveragedAxis& columns, const AveragedAxis& rows, int firstColumn,
                           int endColumn) {
    m_rows = rows;
    m_texelBegin = columns.first(firstColumn);
    m_texelEnd = columns.end(endColumn - 1);
    m_taps = 0;
    m_first.clear();
    for (int column = firstColumn; column < endColumn; ++column) {
        m_first.push_back(columns.first(column) - m_texelBegin);
        m_taps = std::max(m_taps, columns.end(column) - columns.first(column));
    }
    m_weights.clear();
    for (int column = firstColumn; column < endColumn; ++column)
        for (int texel = columns.first(column); texel < columns.first(column) + m_taps; ++texel)
            m_weights.push_back(texel < columns.end(column) ? columns.share(texel, column) : 0);
    // Taps of no weight may lie past the last column, where no sum is written.
    const auto texels =
        static_cast<std::size_t>(std::ptrdiff_t{m_texelEnd} - m_texelBegin + m_taps);
    m_sums.assign(texels * 4 + sumOverrun, 0);
}

void AveragedRows::write(int row, std::uint8_t* out) {
    const int samples = (m_texelEnd - m_texelBegin) * 4;
    const int first = m_rows.first(row);
    for (int y = first; y < m_rows.end(row); ++y)
        sumRow(m_texelRow(y), m_rows.share(y, row), y == first, samples, m_sums.data());
    mixColumns({m_taps, m_first.data(), m_weights.data()}, m_sums.data(),
               static_cast<int>(m_first.size()), out);
}

void scalePicture(const std::uint8_t* pixels, std::ptrdiff_t stride, int sourceWidth,
                  int sourceHeight, std::uint8_t* destination, std::ptrdiff_t destinationStride,
                  int width, int height) {
    AveragedRows rows;
    rows.prepare(AveragedAxis::whole(sourceWidth, width), AveragedAxis::whole(sourceHeight, height),
                 0, width);
    rows.setInput([&](int y) { return pixels + y * stride; });
    for (int y = 0; y < height; ++y)
        rows.write(y, destination + y * destinationStride);
}

} // namespace vantro::media::color
