#include "backgrounds/Noise.h"
#include "backgrounds/painters/Painters.h"

// A glow of colors behind reeded glass.
namespace vantro::backgrounds {
namespace {

struct GlassPalette {
    Gradient glow; ///< 0 the surroundings, 1 the heart of the glow
    float shade;
    float glint;
};

/// The scene behind the glass: a soft diagonal band of light.
float glowAt(Vec2 p) {
    const Vec2 flow = warp(p * 0.8F, {.octaves = 2, .gain = 0.3F, .seed = 51});
    const Vec2 q = rotated(p + flow * 0.22F - Vec2{0.95F, 0.52F}, -0.55F);
    const float band = bell(q.y + 0.10F * sine(q.x * 2.2F + 0.6F), 0.23F);
    const float second = bell(q.y - 0.42F + 0.12F * sine(q.x * 1.9F), 0.12F) * 0.42F;
    const float fall = bell(q.x - 0.1F, 0.75F);
    return saturate((band + second) * fall);
}

Rgb glassAt(const GlassPalette& palette, Vec2 p, float aspect) {
    constexpr float reeds = 26;
    const float reedWidth = aspect / reeds;
    const float position = p.x / reedWidth;
    const float reed = floorOf(position);
    const float s = (position - reed) * 2 - 1; // -1 to 1 across the reed
    // Each reed is a lens: it squeezes a wider stretch of the scene into its width.
    const float bend = s * (0.6F + 0.4F * s * s);
    const Vec2 behind{(reed + 0.5F) * reedWidth - bend * reedWidth * 2.3F, p.y + 0.012F * s * s};
    const float light = glowAt(behind);
    const float edge = square(s * s * s);
    const float shading = 1 - palette.shade * edge;
    const float glint =
        palette.glint * (bell(s + 0.62F, 0.10F) * 0.6F + bell(s - 0.80F, 0.05F)) * (0.15F + light);
    return palette.glow(light + glint * 0.35F + 0.03F * s) * shading +
           color(0xffffff) * (glint * 0.06F);
}

Painter makeGlass(GlassPalette palette, const Frame& frame) {
    return [palette = std::move(palette), aspect = frame.aspect()](Vec2 p) {
        return glassAt(palette, p, aspect);
    };
}

} // namespace

Painter paintGlassDark(const Frame& frame, base::WorkerPool&) {
    return makeGlass({.glow = {{0, 0x07070d},
                               {0.25F, 0x1a0f2e},
                               {0.45F, 0x5c1640},
                               {0.65F, 0xc23a2c},
                               {0.85F, 0xf58a3a},
                               {1, 0xffd79a}},
                      .shade = 0.45F,
                      .glint = 0.5F},
                     frame);
}

Painter paintGlassLight(const Frame& frame, base::WorkerPool&) {
    return makeGlass({.glow = {{0, 0xf4f1ec},
                               {0.25F, 0xeee6f4},
                               {0.45F, 0xcfd9fb},
                               {0.65F, 0xa9d4f2},
                               {0.85F, 0xc8eadb},
                               {1, 0xfdf6c9}},
                      .shade = 0.10F,
                      .glint = 0.6F},
                     frame);
}

} // namespace vantro::backgrounds
