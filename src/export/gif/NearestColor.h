#pragma once

#include "export/gif/Color.h"

#include <array>
#include <span>

namespace vantro::exporting::gif {

/// Finds palette colors with the processor's widest SIMD instructions; results are the same on
/// every processor. Thread-safety: const members from any thread.
class NearestColor {
  public:
    explicit NearestColor(std::span<const Color> palette);

    /// The index of the color with the least distance(); the lowest index where several tie.
    int find(Color color) const;

    // 256 colors in planes; unused places are too far away to be found.
    struct Table {
        alignas(64) std::array<float, 256> red{};
        alignas(64) std::array<float, 256> green{};
        alignas(64) std::array<float, 256> blue{};
        alignas(64) std::array<float, 256> squares{}; ///< weighted, so that scores need no squaring
    };

  private:
    Table m_table;
};

} // namespace vantro::exporting::gif
