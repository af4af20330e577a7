#pragma once

#include "export/gif/Color.h"
#include "export/gif/GifBlocks.h"
#include "media/values/PixelBuffer.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantro::exporting::gif {

/// What a viewer of the animation sees by now, and which pixels of the next picture differ from it
/// visibly.
///
/// A pixel is compared with the color that it had when it was last drawn, not with the frame
/// before: however slowly a picture fades, nothing on screen is ever further off than the
/// threshold. One thread.
class FrameCanvas {
  public:
    FrameCanvas(int width, int height);

    /// Compares `bgra` with what is seen. The smallest region that holds all changed pixels; empty
    /// (width 0) where there are none.
    Region findChanges(const media::PixelBuffer& bgra);
    /// Of the last findChanges().
    bool isChanged(std::size_t at) const { return m_changed[at] != 0; }
    std::size_t changedCount() const { return m_changedCount; }

    /// The palette entry that the pixel shows; transparentIndex where the palette has none.
    std::uint8_t shownIndex(std::size_t at) const {
        return static_cast<std::uint8_t>(m_shown[at] >> 24);
    }

    /// Records that the pixel, which is `wanted` in the picture, now shows a palette entry.
    void draw(std::size_t at, Color wanted, std::uint8_t index, Color color) {
        m_wanted[at] = wanted;
        m_shown[at] = Color{index} << 24 | color;
    }
    /// Looks up all pixels in a new palette.
    void changePalette(const Palette& palette);

  private:
    struct Span {
        int first = 0;
        int end = 0; ///< not above first where the row has no changes
    };
    Span compareRow(const std::uint8_t* row, int y);

    int m_width;
    int m_height;
    bool m_isBlank = true;
    std::size_t m_changedCount = 0;
    std::vector<Color> m_wanted;
    std::vector<std::uint32_t> m_shown; ///< the entry's index above its color
    std::vector<std::uint8_t> m_changed;
};

/// A pixel of a bgra row; alpha is cut off.
inline Color colorAt(const std::uint8_t* row, int x) {
    const auto* pixel = row + static_cast<std::ptrdiff_t>(x) * 4;
    return Color{pixel[2]} << 16 | Color{pixel[1]} << 8 | Color{pixel[0]};
}

} // namespace vantro::exporting::gif
