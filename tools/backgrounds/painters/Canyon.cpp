#include "backgrounds/Noise.h"
#include "backgrounds/Relief.h"
#include "backgrounds/painters/Painters.h"

#include <memory>

// Buttes and terraces of a desert canyon towards evening.
namespace vantro::backgrounds {
namespace {

float canyonHeight(Vec2 p, float footprint) {
    const Vec2 q = p * 0.030F + Vec2{0.6F, 4.2F};
    const Vec2 bent = q + warp(q * 0.9F, {.octaves = 3, .gain = 0.45F, .seed = 901}) * 0.35F;
    const float mesa = fbm(bent, {.octaves = 3, .gain = 0.45F, .seed = 902}) + 0.10F;
    // Water cuts flutes into the cliffs' edges.
    const float flutes =
        ridged(bent * 7, resolved({.octaves = 4, .gain = 0.55F, .seed = 903}, footprint * 0.21F));
    const float edge = mesa - 0.10F * flutes + 0.03F;
    const float talus = smoothstep(-0.42F, 0.06F, edge);
    const float lower = smoothstep(0.02F, 0.065F, edge);
    const float middle = smoothstep(0.15F, 0.185F, edge);
    const float upper = smoothstep(0.30F, 0.335F, edge);
    const float rough =
        fbm(p * 0.7F, resolved({.octaves = 7, .gain = 0.5F, .seed = 904}, footprint * 0.7F));
    return 2.6F * talus * talus + 3.1F * lower + 2.6F * middle + 3.2F * upper +
           0.35F * rough * (1 - 0.6F * upper) - 0.5F;
}

float glowAt(Vec2 p) {
    return exponential(-length(Vec2{p.x - 0.1F, (p.y - 0.42F) * 1.4F}) * 2.4F);
}

Rgb clearSkyAt(Vec2 p) {
    static const Gradient gradient{
        {0, 0x3f6aa6}, {0.2F, 0x7fa0c4}, {0.36F, 0xd9c4b4}, {0.46F, 0xffc890}};
    return gradient(p.y) + color(0xffa050) * (0.35F * glowAt(p));
}

Rgb skyAt(Vec2 p) {
    const Vec2 q{p.x * 1.2F, p.y * 6};
    const float cloud =
        fbm(q + warp(q * 0.8F, {.octaves = 3, .seed = 911}) * 0.4F, {.octaves = 7, .seed = 912});
    return mix(clearSkyAt(p), color(0xffdcc0) * (0.85F + 0.4F * glowAt(p)),
               0.55F * smoothstep(0.1F, 0.8F, cloud));
}

Rgb rockAt(Vec2 place, float height, float detail) {
    static const Gradient strata{{0, 0x7a3b24},    {0.2F, 0xa8512c},  {0.35F, 0xc9703c},
                                 {0.5F, 0x98452a}, {0.65F, 0xd0834c}, {0.8F, 0xb05a34},
                                 {1, 0xdba066}};
    const float warped = height + 0.35F * fbm(place * 0.12F, {.octaves = 3, .seed = 921});
    const float beds =
        noise(Vec2{warped * 2.1F, 0.5F}, 922) +
        0.6F * noise(Vec2{warped * 6.3F, 4.5F}, 923) * smoothstep(0.12F, 0.03F, detail);
    return strata(0.5F + 0.42F * beds +
                  0.10F * fbm(place * 0.9F, resolved({.octaves = 5, .seed = 924}, detail * 0.9F)));
}

Rgb canyonAt(const Relief& relief, Vec2 p, float distance) {
    if (distance == Relief::sky)
        return skyAt(p);
    const Vec3 toSun = normalized({-0.87F, 0.16F, 0.34F});
    const Vec2 place = relief.ground(p, distance);
    const float detail = relief.footprint(distance);
    const auto [height, normal] = relief.surface(place, detail);
    const float sun = relief.sunOn(place, normal, toSun, 34, 0.10F);
    // Level ground carries dust and scrub.
    const float level = smoothstep(0.72F, 0.93F, normal.z);
    const float scrub = smoothstep(
        0.12F, 0.42F,
        fbm(place * 2.3F, resolved({.octaves = 6, .gain = 0.6F, .seed = 925}, detail * 2.3F)));
    const Rgb soil = mix(color(0xb56f45), color(0x5d5a38), 0.55F * scrub);
    const Rgb ground = mix(rockAt(place, height, detail), soil, 0.8F * level);
    const Rgb light = color(0xffbb7c) * (2.3F * sun) +
                      color(0x8193c4) * (0.22F + 0.20F * normal.z) +
                      color(0xb86a44) * (0.13F * (1 - normal.z));
    const float haze = 1 - exponential(-power(distance / 135, 1.5F));
    return mix(ground * light, clearSkyAt({p.x * 0.2F + 0.3F, 0.41F}), 0.92F * haze);
}

} // namespace

Painter paintCanyon(const Frame& frame, base::WorkerPool& pool) {
    const Camera camera{
        .height = 13.5F, .horizon = 0.36F, .focal = 1.35F, .nearest = 8, .farthest = 420};
    const auto relief = std::make_shared<Relief>(frame, camera, canyonHeight, pool);
    return [relief](Vec2 p) {
        return seen(*relief, p, [&](Vec2 place, float d) { return canyonAt(*relief, place, d); });
    };
}

} // namespace vantro::backgrounds
