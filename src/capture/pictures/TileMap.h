#pragma once

#include "media/color/ColorConversion.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace vantro::capture::pictures {

/// A set of a picture's pixels, kept as the tiles that hold them: adding, joining and walking it
/// cost the same however scattered the pixels are. A value.
class TileMap {
  public:
    // One tile row is a cache line of luma; 16 lines are a macroblock's height. Smaller tiles cost
    // bookkeeping, larger ones convert pixels that have not changed.
    static constexpr int tileWidth = 64;
    static constexpr int tileHeight = 16;

    TileMap(int width, int height);

    /// Adds the part of `rect` that lies inside of the picture.
    void add(media::color::PixelRect rect);
    void addAll() { std::ranges::fill(m_tiles, std::uint8_t{1}); }
    void add(const TileMap& other);
    void clear() { std::ranges::fill(m_tiles, std::uint8_t{0}); }
    bool isEmpty() const;
    int tileCount() const;

    /// Calls `visit(PixelRect)` for each run of neighboring tiles in a row of tiles, top to
    /// bottom.
    template <typename Visitor>
    void forEachRun(Visitor&& visit) const {
        for (int row = 0; row < m_rows; ++row) {
            for (int column = 0; column < m_columns;) {
                const int start = column;
                while (column < m_columns && has(column, row))
                    ++column;
                if (column > start)
                    visit(clipped(start, column, row, row + 1));
                else
                    ++column;
            }
        }
    }

    /// Calls `visit(PixelRect)` for each full-width band of neighboring rows of tiles that hold
    /// anything.
    template <typename Visitor>
    void forEachBand(Visitor&& visit) const {
        for (int row = 0; row < m_rows;) {
            const int start = row;
            while (row < m_rows && rowHasAny(row))
                ++row;
            if (row > start)
                visit(clipped(0, m_columns, start, row));
            else
                ++row;
        }
    }

  private:
    bool has(int column, int row) const { return m_tiles[index(column, row)] != 0; }
    bool rowHasAny(int row) const;
    std::size_t index(int column, int row) const {
        return static_cast<std::size_t>(row) * m_columns + column;
    }
    media::color::PixelRect clipped(int firstColumn, int endColumn, int firstRow, int endRow) const;

    int m_width;
    int m_height;
    int m_columns;
    int m_rows;
    std::vector<std::uint8_t> m_tiles; // 1: in the set
};

} // namespace vantro::capture::pictures
