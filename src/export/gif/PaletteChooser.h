#pragma once

#include "export/gif/ColorMatcher.h"
#include "export/gif/FrameCanvas.h"
#include "media/values/PixelBuffer.h"

#include <memory>
#include <vector>

namespace vantro::exporting::gif {

/// Decides with which palette a frame's changes are drawn: the global one, made from the first
/// frame, the latest local one, or a new local one where neither is good enough.
/// One thread.
class PaletteChooser {
  public:
    struct Choice {
        ColorMatcher* matcher = nullptr; ///< stays the chooser's, until the next choice
        bool isGlobal = false;
        bool isOther = false; ///< than at the choice before
    };

    /// For the changes that `canvas` found last in `bgra`; at least one.
    Choice choose(const media::PixelBuffer& bgra, const FrameCanvas& canvas);
    /// After the first choice.
    const Palette& globalPalette() const { return m_global->palette(); }

  private:
    ColorMatcher& best(const media::PixelBuffer& bgra, const FrameCanvas& canvas);
    double errorOf(ColorMatcher& matcher) const;
    void takeSample(const media::PixelBuffer& bgra, const FrameCanvas& canvas);

    std::vector<Color> m_sample; ///< of the changed pixels
    std::unique_ptr<ColorMatcher> m_global;
    std::unique_ptr<ColorMatcher> m_local;
    const ColorMatcher* m_latest = nullptr; ///< the choice before; none where that is gone
    double m_attainable = 0; ///< the mean error of the latest palette on what it was made for
};

} // namespace vantro::exporting::gif
