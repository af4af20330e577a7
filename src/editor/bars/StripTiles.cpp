#include "editor/bars/StripTiles.h"

#include <bit>
#include <cmath>

namespace vantro::editor::bars {

StripTiles StripTiles::of(const timeline::TimeAxis& axis, double seconds, double width) {
    StripTiles result;
    if (!(axis.width > 0 && seconds > 0 && width > 0))
        return result;
    const double all = seconds * media::strips::ticksPerSecond;
    const double perTile = width * axis.span * all / axis.width; // ticks
    const auto grid = static_cast<std::int64_t>(
        std::bit_floor(static_cast<std::uint64_t>(std::max(perTile, 1.0))));
    const auto step = static_cast<double>(grid);
    const auto last = static_cast<std::int64_t>(std::floor(all / step)) * grid;
    result.tolerance = grid / 2;
    for (double tile = std::floor(axis.start * all / perTile);; ++tile) {
        const double begin = tile * perTile;
        const double x = axis.xOf(begin / all);
        if (x >= axis.width || begin >= all)
            return result;
        const auto tick = static_cast<std::int64_t>(std::ceil(begin / step)) * grid;
        result.tiles.push_back(
            {x, std::min(tick, last), static_cast<std::int64_t>(std::ceil(perTile))});
    }
}

} // namespace vantro::editor::bars
