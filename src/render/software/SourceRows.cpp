#include "render/software/SourceRows.h"

#include "media/color/ColorConversion.h"
#include "render/software/RowKernels.h"

#include <cstring>

namespace vantro::render::software {
namespace {

/// Rows converted at once: enough to pay for the call, few enough to stay in the nearest cache.
constexpr int rowsAtOnce = 4;

} // namespace

void SourceRows::prepare(const media::PixelBuffer& picture, PixelSpan columns, PixelSpan rows) {
    m_picture = &picture;
    m_columns = columns;
    m_rows = rows;
    m_held = {};
    m_stride = (static_cast<std::size_t>(columns.length()) + columnOverread) * 4;
    m_pixels.resize(m_stride * rowsAtOnce);
}

const std::uint8_t* SourceRows::row(int y) {
    if (m_picture->format() == media::PixelFormat::i420)
        return converted(y);
    // Reading past a row's end is harmless where the picture's own next row follows.
    const std::uint8_t* start = m_picture->row(0, y) + std::ptrdiff_t{m_columns.begin} * 4;
    const std::uint8_t* last =
        m_picture->row(0, m_picture->height() - 1) + std::ptrdiff_t{m_picture->width()} * 4;
    const auto needed = static_cast<std::ptrdiff_t>(m_stride);
    return m_picture->stride(0) > 0 && last - start >= needed ? start : copied(y);
}

const std::uint8_t* SourceRows::copied(int y) {
    std::memcpy(m_pixels.data(), m_picture->row(0, y) + std::ptrdiff_t{m_columns.begin} * 4,
                static_cast<std::size_t>(m_columns.length()) * 4);
    return m_pixels.data();
}

const std::uint8_t* SourceRows::converted(int y) {
    if (y < m_held.begin || y >= m_held.end) {
        m_held = PixelSpan{y, y + rowsAtOnce}.clippedTo(m_rows);
        media::color::i420RegionToBgra(
            *m_picture, {m_columns.begin, m_held.begin, m_columns.length(), m_held.length()},
            m_pixels.data(), static_cast<std::ptrdiff_t>(m_stride));
    }
    return m_pixels.data() + static_cast<std::size_t>(y - m_held.begin) * m_stride;
}

} // namespace vantro::render::software
