#include "backgrounds/Noise.h"
#include "backgrounds/Relief.h"
#include "backgrounds/painters/Painters.h"

#include <memory>

// High mountains under snow at first light.
namespace vantro::backgrounds {
namespace {

float mountainHeight(Vec2 p, float footprint) {
    const Vec2 q = p * 0.05F + Vec2{2.3F, 7.9F};
    const Vec2 bent = q + warp(q * 0.8F, {.octaves = 2, .seed = 121}) * 0.22F;
    const float ranges = ridged(
        bent * 0.62F, resolved({.octaves = 8, .gain = 0.42F, .seed = 122}, footprint * 0.031F));
    const float worn = eroded(
        bent * 1.3F, resolved({.octaves = 8, .gain = 0.5F, .seed = 123}, footprint * 0.065F));
    const float rise = smoothstep(6, 60, p.y) * (0.45F + 0.55F * smoothstep(25, 70, p.y));
    return rise * (24.F * ranges + 6.F * worn * (0.3F + ranges)) + 0.8F * worn - 1.5F;
}

Rgb clearSkyAt(float y) {
    static const Gradient gradient{
        {0, 0x27497f}, {0.25F, 0x5d82b5}, {0.45F, 0xb3b9cf}, {0.6F, 0xf3c9b4}};
    return gradient(y);
}

Rgb skyAt(Vec2 p) {
    const float cloud = fbm(Vec2{p.x * 1.3F, p.y * 5.5F} + Vec2{1.5F, 0},
                            {.octaves = 6, .gain = 0.5F, .seed = 124});
    const float thin = smoothstep(0.05F, 0.75F, cloud) * 0.5F;
    return mix(clearSkyAt(p.y), color(0xf6d2c6), thin);
}

Rgb snowAt(const Relief& relief, Vec2 p, float distance) {
    if (distance == Relief::sky)
        return skyAt(p);
    const Vec3 toSun = normalized({0.9F, 0.05F, 0.27F});
    const Vec2 place = relief.ground(p, distance);
    const float detail = relief.footprint(distance);
    const Vec3 normal = relief.surface(place, detail).normal;
    const Vec3 broad = relief.broadNormal(place, detail + 0.25F);
    const float sun = relief.sunOn(place, normal, toSun, 22, 0.10F);
    // Snow holds where the ground is not too steep; bare rock shows on the faces.
    const float patch = fbm(place * 1.1F, resolved({.octaves = 6, .seed = 125}, detail * 1.1F));
    const float snow = smoothstep(0.40F, 0.56F, 0.55F * normal.z + 0.45F * broad.z + 0.10F * patch);
    const Rgb rock = mix(color(0x3b3a42), color(0x6a6168), 0.5F + 0.5F * patch);
    const Rgb ground = mix(rock, color(0xf0f3fa), snow);
    const Rgb light =
        color(0xffc39a) * (1.75F * sun) + color(0x6f90d0) * (0.16F + 0.26F * normal.z);
    const float haze = 1 - exponential(-square(distance / 120));
    return mix(ground * light, clearSkyAt(0.52F), 0.88F * haze);
}

} // namespace

Painter paintSnow(const Frame& frame, base::WorkerPool& pool) {
    const Camera camera{
        .height = 6.5F, .horizon = 0.70F, .focal = 2.0F, .nearest = 2, .farthest = 260};
    const auto relief = std::make_shared<Relief>(frame, camera, mountainHeight, pool);
    return [relief](Vec2 p) {
        return seen(*relief, p, [&](Vec2 place, float d) { return snowAt(*relief, place, d); });
    };
}

} // namespace vantro::backgrounds
