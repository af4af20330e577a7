#pragma once

#include "render/scene/CursorImage.h"

#include <vector>

namespace vantro::render {

enum class CursorStyle {
    theme,   ///< the desktop's cursor theme, else the built-in one
    builtIn, ///< our own drawing, the same on every machine
};

/// The standard arrow, at the finest resolution that there is. Needs no display. Never fails.
CursorImage standardCursor(CursorStyle style);

/// A cursor prepared for drawing: its bitmap with a transparent margin, and that bitmap halved
/// again and again, so that linear sampling between two levels neither aliases nor blurs.
///
/// Pixels are premultiplied: draw them with destination × (1 − alpha) + source, never × alpha
/// again. Immutable after construction; any thread.
class CursorTextures {
  public:
    explicit CursorTextures(const CursorImage& cursor);

    /// The cursor with its margin: size and hot spot to place it by. Every level covers exactly its
    /// rectangle.
    const CursorImage& image() const { return m_image; }

    /// The smallest level that is at least `drawnWidth` pixels wide, so less than twice as wide
    /// (unless the bitmap itself is smaller than drawn). The same level is the same pointer.
    const ImagePointer& textureFor(double drawnWidth) const;

  private:
    CursorImage m_image;
    std::vector<ImagePointer> m_levels; // finest first
};

/// The picture at half the size (rounded up), each pixel the mean of the up to four under it.
std::shared_ptr<media::PixelBuffer> halved(const media::PixelBuffer& picture);

} // namespace vantro::render
