#include "backgrounds/Noise.h"
#include "backgrounds/Relief.h"
#include "backgrounds/painters/Painters.h"

#include <algorithm>
#include <memory>

// Mountains in a still lake, early in the morning.
namespace vantro::backgrounds {
namespace {

constexpr float horizon = 0.585F;

float landHeight(Vec2 p, float footprint) {
    const Vec2 q = p * 0.045F + Vec2{6.1F, 2.4F};
    const Vec2 bent = q + warp(q * 0.8F, {.octaves = 2, .seed = 931}) * 0.25F;
    const float ranges = ridged(
        bent * 0.6F, resolved({.octaves = 8, .gain = 0.44F, .seed = 932}, footprint * 0.027F));
    const float worn =
        eroded(bent * 1.4F, resolved({.octaves = 8, .seed = 933}, footprint * 0.063F));
    // The valley opens in the middle; its sides rise.
    const float valley = smoothstep(0.0F, 0.75F, std::abs(p.x / p.y + 0.06F));
    const float rise = smoothstep(17, 75, p.y + 26 * valley);
    const float shoreline = 1.1F * noise(p * 0.16F, 934) + 0.4F * noise(p * 0.6F, 935);
    return rise * (19 * ranges + 5 * worn * (0.3F + ranges)) * (0.45F + 0.75F * valley) +
           0.10F * (p.y - 19 + 7 * valley + shoreline) - 0.6F;
}

float glowAt(Vec2 p) {
    return exponential(-length(Vec2{p.x - 1.45F, p.y - 0.5F}) * 2.2F);
}

Rgb clearSkyAt(Vec2 p) {
    static const Gradient gradient{
        {0, 0x5b8cc0}, {0.25F, 0x98b9d6}, {0.45F, 0xe2d9d3}, {0.585F, 0xffdcb4}};
    return gradient(p.y) + color(0xffb878) * (0.35F * glowAt(p));
}

Rgb skyAt(Vec2 p) {
    const Vec2 q{p.x * 1.4F + 0.3F, p.y * 5};
    const float cloud = fbm(q + warp(q * 0.9F, {.octaves = 3, .seed = 941}) * 0.5F,
                            {.octaves = 8, .gain = 0.52F, .seed = 942});
    return mix(clearSkyAt(p), color(0xfff0e2) * (0.92F + 0.25F * glowAt(p)),
               0.75F * smoothstep(0.05F, 0.7F, cloud));
}

Rgb landAt(const Relief& relief, Vec2 p, float distance) {
    if (distance == Relief::sky)
        return skyAt(p);
    const Vec3 toSun = normalized({0.78F, -0.34F, 0.40F});
    const Vec2 place = relief.ground(p, distance);
    const float detail = relief.footprint(distance);
    const auto [height, normal] = relief.surface(place, detail);
    const Vec3 broad = relief.broadNormal(place, 0.4F + detail);
    const float sun = relief.sunOn(place, normal, toSun, 26, 0.12F);
    const float patch =
        fbm(place * 0.9F, resolved({.octaves = 6, .gain = 0.55F, .seed = 951}, detail * 0.9F));
    // Texture follows the slopes up, or it would be drawn out on them.
    const Vec2 upslope = place + Vec2{0.6F, 0.8F} * height;
    const float crowns =
        fbm(upslope * 7, resolved({.octaves = 3, .gain = 0.6F, .seed = 952}, detail * 7));
    const Rgb forest =
        mix(color(0x16281c), color(0x3c5330), saturate(0.45F + 0.5F * crowns + 0.25F * patch));
    const Rgb meadow = mix(color(0x4d5c30), color(0x83804a), saturate(0.5F + 0.6F * patch));
    const Rgb rock = mix(color(0x55504f), color(0x8b8278), saturate(0.5F + 0.6F * patch));
    const float treeLine = smoothstep(7.5F, 4.0F, height + 2.2F * patch);
    const Rgb green =
        mix(meadow, forest, smoothstep(-0.2F, 0.15F, patch + 0.35F * (broad.z < 0.9F ? 1.F : 0.F)));
    Rgb ground = mix(rock, green, treeLine * smoothstep(0.5F, 0.68F, broad.z));
    const float snow =
        smoothstep(9.F, 12.F, height + 2 * patch) * smoothstep(0.42F, 0.6F, normal.z);
    ground = mix(ground, color(0xf2f4f8), snow);
    const Rgb light = color(0xffc48a) * (2.5F * sun) + color(0x8fa9cf) * (0.24F + 0.26F * normal.z);
    const float haze =
        1 - exponential(-power(distance / 105, 1.4F) * (1.15F - 0.03F * std::min(height, 14.F)));
    const float low =
        exponential(-std::max(height, 0.F) / 0.9F) * smoothstep(16, 45, distance) * 0.5F;
    return mix(ground * light, clearSkyAt({p.x, 0.52F}), saturate(0.78F * haze + low));
}

Rgb lakeAt(const Relief& relief, Vec2 p, float distance) {
    if (distance == Relief::sky ||
        landHeight(relief.ground(p, distance), relief.footprint(distance)) > 0)
        return landAt(relief, p, distance);
    const Vec2 place = relief.ground(p, distance);
    const float detail = relief.footprint(distance);
    const float calm = smoothstep(-0.2F, 0.5F, noise(Vec2{place.x * 0.08F, place.y * 0.22F}, 961));
    const float ripple = fbm(Vec2{place.x * 1.1F, place.y * 2.6F},
                             resolved({.octaves = 5, .gain = 0.5F, .seed = 962}, detail * 6));
    const float down = p.y - horizon;
    const float shift = ripple * (0.006F + 0.055F * down) * (0.35F + 0.9F * calm);
    const Vec2 mirrored{p.x + 0.35F * shift,
                        clamp(horizon - down * 0.97F + shift, 0, horizon - 0.002F)};
    const auto hit = relief.at(mirrored);
    const Rgb reflected = landAt(relief, mirrored, hit.distance);
    // Steeper looks go deeper into the water.
    const float fresnel = saturate(0.80F - 1.05F * down + 0.4F * shift);
    return mix(color(0x0c2730), reflected, fresnel) * 0.96F;
}

} // namespace

Painter paintLake(const Frame& frame, base::WorkerPool& pool) {
    const Camera camera{
        .height = 0.9F, .horizon = horizon, .focal = 1.5F, .nearest = 2.5F, .farthest = 220};
    const auto height = [](Vec2 place, float footprint) {
        return std::max(0.F, landHeight(place, footprint));
    };
    const auto relief = std::make_shared<Relief>(frame, camera, height, pool);
    return [relief](Vec2 p) {
        return seen(*relief, p, [&](Vec2 place, float d) { return lakeAt(*relief, place, d); });
    };
}

} // namespace vantro::backgrounds
