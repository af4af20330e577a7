#include "backgrounds/Noise.h"
#include "backgrounds/painters/Painters.h"

#include <array>

// Translucent ribbons that twist through the picture.
namespace vantro::backgrounds {
namespace {

struct VeilPalette {
    Gradient ground;
    Gradient veil; ///< by the ribbon's place in the fan, 0 to 1
    float opacity;
    float lift; ///< how much brighter the dense parts are
    float edge; ///< and the rims
};

constexpr int veilCount = 8;

struct Ribbon {
    float middle;
    float halfWidth; ///< negative while the ribbon shows its back
};

Ribbon ribbonAt(float t, float x) {
    const float middle = 0.52F + 0.23F * sine(x * 2.0F + 0.5F + t * 1.15F) +
                         0.10F * sine(x * 3.4F - 1.1F + t * 2.3F) + 0.22F * (t - 0.5F);
    const float halfWidth =
        0.27F * cosine(x * 2.1F + 0.2F + t * 1.6F) + 0.075F * sine(x * 1.3F + t * 3);
    return {.middle = middle, .halfWidth = halfWidth};
}

Rgb veilsAt(const VeilPalette& palette, Vec2 p, float pixel) {
    const Vec2 bent = p + Vec2{0, 0.03F * noise(p * 1.4F, 41)};
    Rgb result = palette.ground(0.5F + 0.42F * (p.y - 0.5F) + 0.28F * (p.x - 0.89F) +
                                0.12F * noise(p * 0.9F, 42));
    for (int veil = 0; veil < veilCount; ++veil) {
        const float t = static_cast<float>(veil) / (veilCount - 1);
        const Ribbon ribbon = ribbonAt(t, bent.x);
        const float width = std::sqrt(square(ribbon.halfWidth) + square(0.004F));
        const float s = (bent.y - ribbon.middle) / width * (ribbon.halfWidth < 0 ? -1.F : 1.F);
        const float inside = saturate((1 - std::abs(s)) * width / (pixel * 1.5F) + 0.5F);
        if (inside <= 0)
            continue;
        // Seen edge-on the ribbon is dense; towards its rim it thins out on one side.
        const float dense = clamp(0.05F / width, 0.25F, 1.2F);
        const float rim = exponential(-(1 - std::abs(s)) * width / 0.006F);
        const float thin = 0.5F + 0.5F * s;
        const float alpha =
            saturate(palette.opacity * (0.18F + 0.82F * thin * thin) * (0.55F + dense * 0.6F));
        const float glow =
            0.78F + palette.lift * (0.5F * thin + 0.35F * dense) + palette.edge * rim;
        const Rgb shade = palette.veil(t + 0.22F * (s * 0.5F) + 0.16F * (p.x - 0.89F));
        result = mix(result, shade * glow, alpha * inside);
    }
    return result;
}

Painter makeVeils(VeilPalette palette, const Frame& frame) {
    return [palette = std::move(palette), pixel = frame.pixel()](Vec2 p) {
        return veilsAt(palette, p, pixel);
    };
}

} // namespace

Painter paintVeilsDark(const Frame& frame, base::WorkerPool&) {
    return makeVeils({.ground = {{0, 0x02060f}, {0.5F, 0x061a2e}, {1, 0x0d1233}},
                      .veil = {{0, 0x0fb5a0}, {0.35F, 0x1b86d8}, {0.65F, 0x4f5be6}, {1, 0xa646d8}},
                      .opacity = 0.42F,
                      .lift = 1,
                      .edge = 0.6F},
                     frame);
}

Painter paintVeilsLight(const Frame& frame, base::WorkerPool&) {
    return makeVeils({.ground = {{0, 0xf3f7fc}, {0.5F, 0xe9f1fb}, {1, 0xf3ecfb}},
                      .veil = {{0, 0x5fe0cf}, {0.35F, 0x62b4fb}, {0.65F, 0x8f92ff}, {1, 0xe08cf5}},
                      .opacity = 0.52F,
                      .lift = 0.45F,
                      .edge = 0.25F},
                     frame);
}

} // namespace vantro::backgrounds
