#pragma once

#include "render/scene/MaskSpans.h"
#include "render/software/FramePlan.h"
#include "render/software/SourceRows.h"
#include "render/software/StretchedRows.h"

#include <cstdint>
#include <vector>

namespace vantro::render::software {

/// One layer of a frame, drawn row by row within a rectangle of its target.
///
/// Reused for many layers; its memory stays. One thread.
class LayerRows {
  public:
    /// Draws `plan`, which must outlive the use, within `part`.
    void prepare(const PicturePlan& plan, const Tile& part);

    /// Whether the picture covers the row of the part from end to end.
    bool covers(int row);
    /// Lays the picture, opaque whatever its alpha, into a row of the part. `under` holds the row
    /// that shows around it and through its softened rim; needed only where it does not cover.
    void write(int row, const std::uint8_t* under, std::uint8_t* out);
    /// Blends the premultiplied picture onto a row of the part.
    void blend(int row, std::uint8_t* out);

  private:
    bool touches(int row) const {
        return !m_touched.isEmpty() && row >= m_touched.rows.begin && row < m_touched.rows.end;
    }
    const MaskSpans& spansOf(int row);
    std::ptrdiff_t offsetOf(int column) const {
        return std::ptrdiff_t{column - m_part.columns.begin} * 4;
    }

    const PicturePlan* m_plan = nullptr;
    Tile m_part;
    Tile m_touched;
    int m_spansRow = -1;
    MaskSpans m_spans; ///< of m_spansRow
    StretchedRows m_stretched;
    SourceRows m_source;
    std::vector<std::uint8_t> m_pixels;
};

} // namespace vantro::render::software
