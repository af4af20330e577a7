#include "capture/pictures/PictureComparison.h"

#include <cstring>

namespace vantro::capture::pictures {

PictureComparison::PictureComparison(int width, int height)
    : m_width(width), m_height(height), m_previous(std::size_t{4} * width * height) {}

void PictureComparison::collect(const std::uint8_t* pixels, std::ptrdiff_t stride,
                                TileMap& changed) {
    for (int y = 0; y < m_height; ++y)
        collectRow(y, pixels + y * stride, changed);
}

void PictureComparison::collectRow(int y, const std::uint8_t* row, TileMap& changed) {
    auto* copy = m_previous.data() + std::ptrdiff_t{4} * y * m_width;
    if (std::memcmp(row, copy, std::size_t{4} * m_width) == 0)
        return;
    for (int x = 0; x < m_width; x += TileMap::tileWidth) {
        const int width = std::min(TileMap::tileWidth, m_width - x);
        const auto* now = row + std::ptrdiff_t{4} * x;
        auto* before = copy + std::ptrdiff_t{4} * x;
        const auto size = std::size_t{4} * width;
        if (std::memcmp(now, before, size) == 0)
            continue;
        std::memcpy(before, now, size);
        changed.add({x, y, width, 1});
    }
}

} // namespace vantro::capture::pictures
