#pragma once

#include "media/strips/Strip.h"
#include "timeline/TimeAxis.h"

namespace vantro::editor::bars {

/// Where a thumbnail stands on the time line, and of what time it is.
struct StripTile {
    double x = 0;            ///< points
    std::int64_t tick = 0;   ///< see media::strips
    std::int64_t spread = 0; ///< ticks that the tile covers
    bool operator==(const StripTile&) const = default;
};

/// The thumbnails that fill a view, from left to right. They stand at fixed times, so that they
/// scroll with the recording; each shows a time that it covers.
struct StripTiles {
    std::vector<StripTile> tiles;
    /// Ticks that a picture may be earlier; half of what the tiles are apart.
    std::int64_t tolerance = 0;

    /// `seconds`: of the whole axis; `width`: of a tile, points. None without either.
    static StripTiles of(const timeline::TimeAxis& axis, double seconds, double width);
};

} // namespace vantro::editor::bars
