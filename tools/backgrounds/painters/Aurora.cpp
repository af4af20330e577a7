#include "backgrounds/Noise.h"
#include "backgrounds/Profile.h"
#include "backgrounds/painters/Painters.h"
#include "backgrounds/painters/Sky.h"

#include <algorithm>
#include <memory>

// Northern lights over a still lake.
namespace vantro::backgrounds {
namespace {

constexpr float shore = 0.70F;

struct Curtain {
    float foot; ///< picture height of its lower edge
    float swing;
    float phase;
    float strength;
    float reach; ///< how far it rises
};

constexpr Curtain curtains[] = {
    {0.50F, 0.085F, 0.3F, 0.75F, 0.20F},
    {0.36F, 0.120F, 1.9F, 1.15F, 0.24F},
    {0.23F, 0.100F, 4.1F, 0.60F, 0.20F},
};

Rgb auroraAt(Vec2 p) {
    static const Gradient tint{{0, 0x9dffb8},    {0.10F, 0x3df59a}, {0.30F, 0x17c795},
                               {0.5F, 0x1f86ae}, {0.72F, 0x5a44c4}, {1, 0xa02f9c}};
    Rgb sum{};
    for (const auto& c : curtains) {
        const float fold = p.x + 0.13F * sine(p.x * 3.3F + c.phase * 2) +
                           0.10F * noise(Vec2{p.x * 2.1F, c.phase}, 401);
        const float foot = c.foot + c.swing * sine(fold * 2.4F + c.phase) +
                           0.4F * c.swing * sine(fold * 5.3F + c.phase * 3) - 0.03F * (p.x - 0.9F);
        const float up = foot - p.y;
        const float rays =
            fbm(Vec2{fold * 13 + up * 0.8F, c.phase}, {.octaves = 5, .gain = 0.6F, .seed = 402});
        const float reach = c.reach * (1 + 0.45F * rays);
        const float rise = up / reach;
        const float profile =
            smoothstep(-0.022F, 0.05F, up) * exponential(-1.45F * std::max(rise, 0.F)) +
            0.14F * bell(up - 0.01F, 0.016F);
        const float patches =
            smoothstep(-0.65F, 0.55F, noise(Vec2{p.x * 1.3F, c.phase + 9}, 403) + 0.05F);
        const float light = c.strength * profile * (0.62F + 0.55F * rays) * patches;
        sum = sum + tint(saturate(rise * 0.5F)) * std::max(light, 0.F);
    }
    return sum;
}

float hillTop(float x) {
    return shore - 0.05F - 0.085F * skyline(x * 1.9F + 2.2F, 10, 405) - 0.05F * square(x - 0.8F);
}

struct Scene {
    Canvas glow; ///< the aurora alone: soft, so coarse pixels hold it
    Profile hills;
    Gradient night{{0, 0x030814}, {0.35F, 0x081a2c}, {0.62F, 0x12384a}};
    float pixel;
};

/// What stands above the lake; its mirror image is too blurred to show stars.
Rgb aboveLake(const Scene& scene, Vec2 p, float starlight, float pixel) {
    const float cover = coverage(p.y - scene.hills(p.x), pixel);
    Rgb sky{};
    if (cover < 1) {
        const Rgb aurora = scene.glow.sampled(p);
        const float veil = saturate(1 - luminance(aurora) * 1.4F) * starlight;
        sky = scene.night(p.y) + aurora * 0.85F;
        if (veil > 0)
            sky = sky + starsAt(p, 9, pixel, 404) * veil;
    }
    if (cover <= 0)
        return sky;
    const float snow =
        smoothstep(0.05F, 0.5F, fbm(Vec2{p.x * 9, p.y * 22}, {.octaves = 5, .seed = 406}));
    return mix(sky, mix(color(0x04090f), color(0x16303c), snow * 0.8F), cover);
}

Rgb lakeAt(const Scene& scene, Vec2 p) {
    const float down = p.y - shore;
    const float depth = 0.05F / (down + 0.012F);
    const float ripple = fbm(Vec2{p.x * depth * 3.2F, depth * 9}, {.octaves = 3, .seed = 407});
    const Vec2 mirrored{p.x + 0.006F * ripple,
                        shore - down * 1.02F + 0.030F * ripple * (0.25F + down)};
    // Water blurs a reflection along the line of sight.
    Rgb sum{};
    for (int i = -1; i <= 1; ++i) {
        const Vec2 offset{0, static_cast<float>(i) * 0.02F * (0.2F + down)};
        sum = sum + aboveLake(scene, mirrored + offset, 0, scene.pixel * 4);
    }
    return sum * (0.24F - 0.12F * down) + color(0x02060c);
}

} // namespace

Painter paintAurora(const Frame& frame, base::WorkerPool& pool) {
    Canvas glow({(frame.width + 2) / 3, (frame.height + 2) / 3});
    glow.paint(auroraAt, pool);
    const auto scene = std::make_shared<Scene>(
        Scene{.glow = std::move(glow), .hills = {frame, hillTop}, .pixel = frame.pixel()});
    return [scene](Vec2 p) {
        return p.y < shore ? aboveLake(*scene, p, 1, scene->pixel) : lakeAt(*scene, p);
    };
}

} // namespace vantro::backgrounds
