#include "resources/backgrounds/Noise.h"
#include "resources/backgrounds/painters/Painters.h"
#include "resources/backgrounds/painters/Sky.h"

#include <algorithm>

// Northern lights over a still lake, and the milky way over mountains.
namespace vantro::backgrounds {
namespace {

struct Curtain {
    float foot;     ///< picture height of its lower edge
    float swing;
    float phase;
    float strength;
    float reach;    ///< how far it rises
};

constexpr Curtain curtains[] = {
    {0.50F, 0.085F, 0.3F, 0.75F, 0.20F},
    {0.36F, 0.120F, 1.9F, 1.15F, 0.24F},
    {0.23F, 0.100F, 4.1F, 0.60F, 0.20F},
};

Rgb auroraAt(Vec2 p) {
    static const Gradient tint{{0, 0x9dffb8}, {0.10F, 0x3df59a}, {0.30F, 0x17c795}, {0.5F, 0x1f86ae}, {0.72F, 0x5a44c4}, {1, 0xa02f9c}};
    Rgb sum{};
    for (const auto& c : curtains) {
        const float fold = p.x + 0.13F * sine(p.x * 3.3F + c.phase * 2) + 0.10F * noise(Vec2{p.x * 2.1F, c.phase}, 401);
        const float foot = c.foot + c.swing * sine(fold * 2.4F + c.phase) + 0.4F * c.swing * sine(fold * 5.3F + c.phase * 3) -
                           0.03F * (p.x - 0.9F);
        const float up = foot - p.y;
        const float rays = fbm(Vec2{fold * 13 + up * 0.8F, c.phase}, {.octaves = 5, .gain = 0.6F, .seed = 402});
        const float reach = c.reach * (1 + 0.45F * rays);
        const float rise = up / reach;
        const float profile = smoothstep(-0.022F, 0.05F, up) * exponential(-1.45F * std::max(rise, 0.F)) +
                              0.14F * bell(up - 0.01F, 0.016F);
        const float patches = smoothstep(-0.65F, 0.55F, noise(Vec2{p.x * 1.3F, c.phase + 9}, 403) + 0.05F);
        const float light = c.strength * profile * (0.62F + 0.55F * rays) * patches;
        sum = sum + tint(saturate(rise * 0.5F)) * std::max(light, 0.F);
    }
    return sum;
}

Rgb auroraSky(Vec2 p, float starlight, float pixel) {
    static const Gradient night{{0, 0x030814}, {0.35F, 0x081a2c}, {0.62F, 0x12384a}};
    const Rgb aurora = auroraAt(p);
    const float veil = saturate(1 - luminance(aurora) * 1.4F);
    return night(p.y) + aurora * 0.85F + starsAt(p, 9, pixel, 404) * (veil * starlight);
}

constexpr float shore = 0.70F;

float hillTop(float x) { return shore - 0.05F - 0.085F * skyline(x * 1.9F + 2.2F, 10, 405) - 0.05F * square(x - 0.8F); }

/// What stands above the lake; its mirror image is too blurred to show stars.
Rgb auroraScene(Vec2 p, float starlight, float pixel) {
    const Rgb sky = auroraSky(p, starlight, pixel);
    const float cover = coverage(p.y - hillTop(p.x), pixel);
    if (cover <= 0)
        return sky;
    const float snow = smoothstep(0.05F, 0.5F, fbm(Vec2{p.x * 9, p.y * 22}, {.octaves = 5, .seed = 406}));
    const Rgb hill = mix(colour(0x04090f), colour(0x16303c), snow * 0.8F);
    return mix(sky, hill, cover);
}

Rgb auroraLake(Vec2 p, float pixel) {
    const float down = p.y - shore;
    const float depth = 0.05F / (down + 0.012F);
    const float ripple = fbm(Vec2{p.x * depth * 3.2F, depth * 9}, {.octaves = 3, .seed = 407});
    const Vec2 mirrored{p.x + 0.006F * ripple, shore - down * 1.02F + 0.030F * ripple * (0.25F + down)};
    // Water blurs a reflection along the line of sight.
    Rgb sum{};
    for (int i = -1; i <= 1; ++i)
        sum = sum + auroraScene(mirrored + Vec2{0, static_cast<float>(i) * 0.02F * (0.2F + down)}, 0, pixel * 4);
    return sum * (0.24F - 0.12F * down) + colour(0x02060c);
}

/// The band of the milky way: x along it, y across.
Vec2 alongBand(Vec2 p) { return rotated(p - Vec2{1.02F, 0.42F}, 0.95F); }

Rgb milkyWayAt(Vec2 p) {
    const Vec2 q = alongBand(p);
    const Vec2 bent = q + warp(q * 2.6F, {.octaves = 5, .gain = 0.55F, .seed = 411}) * 0.075F;
    const float core = bell(q.x + 0.16F, 0.36F);
    const float width = 0.085F + 0.06F * core;
    const float band = bell(bent.y, width);
    const float clouds = saturate(0.5F + 0.62F * fbm(bent * 5.5F, {.octaves = 8, .gain = 0.6F, .seed = 412}));
    // Dust lies along the middle, in a main lane with side arms that the warp frays.
    const float arms = fbm(Vec2{bent.x * 3.2F, bent.y * 9} + Vec2{3, 1}, {.octaves = 8, .gain = 0.6F, .seed = 413});
    const float lane = bell(bent.y - 0.014F + 0.05F * arms, 0.020F + 0.014F * core);
    const float dust = saturate(0.85F * lane + 0.9F * smoothstep(0.05F, 0.55F, arms) * bell(bent.y, width * 0.8F));
    const float light = band * (0.10F + 0.75F * clouds * clouds) * (0.40F + 1.15F * core) * (1 - 0.86F * dust);
    const float warm = saturate(core * bell(q.y, 0.10F) * 0.9F);
    const Rgb tint = mix(colour(0x8ea6e6), colour(0xffdcbc), warm);
    const float nebula = power(saturate(noise(q * 8, 414)), 2) * bell(q.y, 0.05F) * core;
    return tint * (light * 0.95F) + colour(0xd0507a) * (nebula * 0.28F);
}

Rgb milkyWaySky(Vec2 p, float pixel) {
    static const Gradient night{{0, 0x060a1c}, {0.4F, 0x0e1834}, {0.7F, 0x24375c}, {0.85F, 0x5d5a6c}, {0.95F, 0x9c7a68}};
    const Vec2 q = alongBand(p);
    const float crowd = 0.45F + 0.9F * bell(q.y, 0.16F);
    const float low = smoothstep(0.96F, 0.6F, p.y);
    return night(p.y) + milkyWayAt(p) * low + starsAt(p, 26, pixel, 415) * (crowd * low);
}

Rgb milkyWayScene(Vec2 p, float pixel) {
    Rgb result = milkyWaySky(p, pixel);
    static const Gradient range{{0, 0x2c3650}, {0.5F, 0x141b2e}, {1, 0x04070d}};
    for (int ridge = 0; ridge < 3; ++ridge) {
        const auto n = static_cast<float>(ridge);
        const float top = 0.815F + 0.06F * n - (0.075F - 0.012F * n) * skyline(p.x * (1.5F + 0.5F * n) + 5 * n + 1.3F, 10, 420U + static_cast<std::uint32_t>(ridge));
        const float cover = coverage(p.y - top, pixel);
        const float mist = exponential(-(p.y - top) * 9) * (1 - 0.4F * n);
        result = mix(result, mix(range(n / 2), colour(0x4a4a5e), 0.3F * saturate(1 - mist) * (1 - n / 2)), cover);
    }
    return result;
}

} // namespace

Painter paintAurora(const Frame& frame, WorkerPool&) {
    return [pixel = frame.pixel()](Vec2 p) {
        return p.y < shore ? auroraScene(p, 1, pixel) : auroraLake(p, pixel);
    };
}

Painter paintMilkyWay(const Frame& frame, WorkerPool&) {
    return [pixel = frame.pixel()](Vec2 p) { return milkyWayScene(p, pixel); };
}

} // namespace vantro::backgrounds
