#pragma once

#include "capture/pictures/TileMap.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantro::capture::pictures {

/// Finds where a BGRX picture has changed by comparing it with a copy, for desktops that do not
/// tell. One thread.
class PictureComparison {
  public:
    /// The first picture that is compared counts as changed wherever it is not black.
    PictureComparison(int width, int height);

    /// Adds the tiles that differ from the picture before.
    void collect(const std::uint8_t* pixels, std::ptrdiff_t stride, TileMap& changed);
    /// The same for one row of it.
    void collectRow(int y, const std::uint8_t* row, TileMap& changed);

    /// The copy: the picture as it was last compared, without gaps between its rows.
    const std::uint8_t* pixels() const { return m_previous.data(); }

  private:
    int m_width;
    int m_height;
    std::vector<std::uint8_t> m_previous;
};

} // namespace vantro::capture::pictures
