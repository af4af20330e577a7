#pragma once

#include "media/values/PixelBuffer.h"
#include "render/software/SampleAxis.h"

#include <cstdint>
#include <vector>

namespace vantro::render::software {

/// The rows of a picture as BGRA, within a span of columns; i420 is converted a few rows at a time.
///
/// Reused for many pictures; its memory stays. One thread.
class SourceRows {
  public:
    /// `picture` must outlive the use; rows outside of `rows` are not asked for.
    void prepare(const media::PixelBuffer& picture, PixelSpan columns, PixelSpan rows);

    /// Row `y` from the span's first column on, readable for `columnOverread` pixels past its last.
    /// Stays valid until the next call.
    const std::uint8_t* row(int y);

  private:
    const std::uint8_t* copied(int y);
    const std::uint8_t* converted(int y);

    const media::PixelBuffer* m_picture = nullptr;
    PixelSpan m_columns;
    PixelSpan m_rows;
    PixelSpan m_held; ///< the rows in m_pixels
    std::size_t m_stride = 0;
    std::vector<std::uint8_t> m_pixels;
};

} // namespace vantro::render::software
