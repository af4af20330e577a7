#pragma once

#include "render/scene/CursorImage.h"
#include "render/scene/Renderer.h"

#include <array>
#include <vector>

namespace vantro::test {

/// Blue, green, red, alpha from 0 to 255.
using Color = std::array<double, 4>;

/// A picture in double precision, written for clarity only: what a renderer is compared with.
struct ReferencePicture {
    int width = 0;
    int height = 0;
    std::vector<Color> pixels;
    /// Pixels that a softened edge touches: renderers may differ a little more there.
    std::vector<bool> rim;

    ReferencePicture(int w, int h);
    Color& at(int x, int y) { return pixels[index(x, y)]; }
    const Color& at(int x, int y) const { return pixels[index(x, y)]; }
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }
};

/// The pixels of a buffer; i420 with chroma interpolated between its samples' centres.
ReferencePicture referencePixels(const media::PixelBuffer& buffer);

/// Draws the frame, layer by layer onto targets of 8 bits a channel.
ReferencePicture referenceFrame(const render::RenderParams& params,
                                const render::CursorTextures& cursor);

struct Difference {
    double inside = 0; ///< largest difference of a channel away from rims
    double rim = 0;    ///< and on them
};
/// bgra is compared by channel, i420 by sample after exact conversion of the reference.
Difference difference(const media::PixelBuffer& drawn, const ReferencePicture& reference);

} // namespace vantro::test
