#include "capture/pictures/TileMap.h"

#include "base/Fatal.h"

namespace vantro::capture::pictures {

TileMap::TileMap(int width, int height)
    : m_width(width)
    , m_height(height)
    , m_columns((width + tileWidth - 1) / tileWidth)
    , m_rows((height + tileHeight - 1) / tileHeight)
    , m_tiles(static_cast<std::size_t>(m_columns) * m_rows) {}

void TileMap::add(media::color::PixelRect rect) {
    const int left = std::max(rect.x, 0);
    const int top = std::max(rect.y, 0);
    const int right = std::min(rect.x + rect.width, m_width);
    const int bottom = std::min(rect.y + rect.height, m_height);
    if (left >= right || top >= bottom)
        return;
    const int endColumn = (right - 1) / tileWidth + 1;
    for (int row = top / tileHeight; row <= (bottom - 1) / tileHeight; ++row)
        std::fill(m_tiles.begin() + static_cast<std::ptrdiff_t>(index(left / tileWidth, row)),
                  m_tiles.begin() + static_cast<std::ptrdiff_t>(index(endColumn, row)),
                  std::uint8_t{1});
}

void TileMap::add(const TileMap& other) {
    base::require(m_width == other.m_width && m_height == other.m_height,
                  "tile maps of unequal size");
    std::ranges::transform(m_tiles, other.m_tiles, m_tiles.begin(), std::bit_or<>());
}

bool TileMap::isEmpty() const {
    return std::ranges::find(m_tiles, std::uint8_t{1}) == m_tiles.end();
}

int TileMap::tileCount() const {
    return static_cast<int>(std::ranges::count(m_tiles, std::uint8_t{1}));
}

bool TileMap::rowHasAny(int row) const {
    const auto first = m_tiles.begin() + static_cast<std::ptrdiff_t>(index(0, row));
    return std::find(first, first + m_columns, std::uint8_t{1}) != first + m_columns;
}

media::color::PixelRect TileMap::clipped(int firstColumn, int endColumn, int firstRow,
                                         int endRow) const {
    const int left = firstColumn * tileWidth;
    const int top = firstRow * tileHeight;
    return {.x = left,
            .y = top,
            .width = std::min(endColumn * tileWidth, m_width) - left,
            .height = std::min(endRow * tileHeight, m_height) - top};
}

} // namespace vantro::capture::pictures
