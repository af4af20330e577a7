#pragma once

#include "export/gif/NearestColor.h"

#include <array>
#include <cstdint>
#include <vector>

namespace vantro::exporting::gif {

/// Two palette entries that stand for a color when pixels alternate between them: `share` of 256
/// pixels show `high`, the others `low`. An undithered color has equal entries.
struct ColorMix {
    std::uint8_t low = 0;
    std::uint8_t high = 0;
    std::uint8_t share = 0;
};

/// Says which entries of a palette stand for a color, and remembers what it said.
///
/// The answer depends on nothing but the color and the palette, and which of the two entries a
/// pixel takes only on its place, so that still areas stay still. One thread at a time.
class ColorMatcher {
  public:
    explicit ColorMatcher(Palette palette);

    const Palette& palette() const { return m_palette; }
    ColorMix match(Color color) {
        auto& slot = m_cache[(color * 0x9E3779B1U) >> (32 - cacheBits)];
        if (slot.key != (color | known))
            slot = {color | known, compute(color)};
        return slot.mix;
    }
    /// The entry that a pixel of this color takes at (x, y).
    std::uint8_t indexAt(Color color, int x, int y) {
        const auto mix = match(color);
        return threshold(x, y) < mix.share ? mix.high : mix.low;
    }
    /// distance() to the nearest entry.
    int error(Color color);

  private:
    static constexpr int cacheBits = 16;
    static constexpr std::uint32_t known = 1U << 24; // an empty slot matches no color
    static constexpr int neighborCount = 16;

    struct Slot {
        std::uint32_t key = 0;
        ColorMix mix;
    };
    struct Neighbor {
        std::uint8_t index = 0;
        float red = 0; ///< differences to the neighbor, weighted and plain squares apart
        float green = 0;
        float blue = 0;
        float length = 0; ///< distance()
    };
    using Neighbors = std::vector<Neighbor>;

    static std::uint8_t threshold(int x, int y);
    ColorMix compute(Color color);
    const Neighbors& neighbors(int index);

    Palette m_palette;
    NearestColor m_nearest;
    std::vector<Slot> m_cache;
    std::array<Neighbors, maxColors> m_neighbors;
};

/// 8 × 8 ordered dither: regular, so that it compresses, and bound to the place, so that it does
/// not crawl. Values 2, 6, … 254.
inline constexpr auto ditherThresholds = [] {
    std::array<std::uint8_t, 64> values{};
    for (unsigned y = 0; y < 8; ++y)
        for (unsigned x = 0; x < 8; ++x) {
            unsigned value = 0;
            for (unsigned bit = 0; bit < 3; ++bit) {
                value = value << 2 | ((x ^ y) >> bit & 1) << 1 | (y >> bit & 1);
            }
            values[y * 8 + x] = static_cast<std::uint8_t>(value * 4 + 2);
        }
    return values;
}();

inline std::uint8_t ColorMatcher::threshold(int x, int y) {
    return ditherThresholds[(static_cast<unsigned>(y) & 7) * 8 + (static_cast<unsigned>(x) & 7)];
}

} // namespace vantro::exporting::gif
