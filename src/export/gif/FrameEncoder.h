#pragma once

#include "export/gif/FrameCanvas.h"
#include "export/gif/GifBlocks.h"
#include "export/gif/LzwEncoder.h"
#include "export/gif/PaletteChooser.h"
#include "media/values/PixelBuffer.h"

#include <array>
#include <vector>

namespace vantro::exporting::gif {

/// Turns pictures into GIF images that hold what changed from one to the next. One thread.
class FrameEncoder {
  public:
    FrameEncoder(int width, int height);

    /// The image, its delay still 0; empty where nothing changed visibly.
    Bytes encode(const media::PixelBuffer& bgra);
    /// The file's beginning; known after the first picture.
    Bytes fileHeader() const;

  private:
    void drawChanges(const media::PixelBuffer& bgra, Region region, ColorMatcher& matcher);
    Bytes encodeWithOwnTable(Region region, const Palette& palette);
    Bytes encodeWithGlobalTable(Region region);

    int m_width;
    int m_height;
    FrameCanvas m_canvas;
    PaletteChooser m_chooser;
    LzwEncoder m_lzw;
    std::vector<Symbols> m_symbols; ///< of the region, row by row
    std::array<bool, 256> m_used{}; ///< entries that the image cannot do without
};

} // namespace vantro::exporting::gif
