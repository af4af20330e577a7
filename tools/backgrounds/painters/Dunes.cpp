#include "backgrounds/Noise.h"
#include "backgrounds/Relief.h"
#include "backgrounds/painters/Painters.h"

#include <memory>

// Desert dunes in the low sun of the late afternoon.
namespace vantro::backgrounds {
namespace {

/// One dune in section, 0 to 1: the wind's long slope, a sharp crest, the slip face.
float section(float phase) {
    constexpr float crest = 0.68F;
    const float s = fractionOf(phase);
    if (s < crest) {
        const float t = s / crest;
        return t * t * (1.9F - 0.9F * t);
    }
    const float t = (1 - s) / (1 - crest);
    return t * (0.75F + 0.25F * t);
}

float duneHeight(Vec2 p, float footprint) {
    const Vec2 q = p * 0.05F + Vec2{1.7F, 3.1F};
    const Vec2 bend =
        warp(Vec2{q.x * 0.5F, q.y * 0.9F}, {.octaves = 2, .gain = 0.35F, .seed = 111});
    const float size = smoothstep(-0.7F, 0.6F, noise(q * 0.7F, 112));
    const float main = section(q.x * 0.85F + q.y * 0.42F + bend.x * 1.25F);
    const float cross = section(q.x * 1.1F - q.y * 1.7F + bend.y * 1.1F + 0.4F);
    return 5.4F * main * (0.35F + 0.65F * size) + 1.3F * cross * (1 - 0.6F * main) +
           0.03F * fbm(p * 0.5F, resolved({.octaves = 2, .seed = 113}, footprint * 0.5F));
}

/// The slope that the wind's ripples add, across their crests.
Vec2 ripples(Vec2 p, float footprint) {
    const float visible = smoothstep(0.09F, 0.02F, footprint);
    if (visible <= 0)
        return {};
    const float bend = fbm(p * 0.55F, {.octaves = 3, .seed = 114});
    const float phase = p.y * 21 + p.x * 7 + bend * 7;
    const float strength = 0.20F * visible * (0.5F + 0.5F * noise(p * 0.35F, 115));
    return Vec2{0.3F, 0.95F} * (cosine(phase) * strength);
}

Rgb skyAt(Vec2 p) {
    static const Gradient gradient{
        {0, 0x5f86b8}, {0.22F, 0xa3b4c8}, {0.4F, 0xe9cfae}, {0.5F, 0xf6c58c}};
    const Vec2 toSun = p - Vec2{0.05F, 0.34F};
    const float glow = exponential(-length(toSun) * 2.2F);
    return gradient(p.y) + color(0xffb469) * (0.55F * glow);
}

Rgb duneAt(const Relief& relief, Vec2 p, float distance) {
    if (distance == Relief::sky)
        return skyAt(p);
    const Vec3 toSun = normalized({-0.86F, 0.10F, 0.36F});
    const Vec2 place = relief.ground(p, distance);
    const float detail = relief.footprint(distance);
    const Vec3 smooth = relief.surface(place, std::max(detail, 0.04F)).normal;
    const Vec2 ripple = ripples(place, detail);
    const Vec3 normal = normalized(smooth + Vec3{ripple.x, ripple.y, 0});
    const float sun = relief.sunOn(place, normal, toSun, 26, 0.12F);
    const float open = 0.55F + 0.45F * normal.z;
    const float mottle =
        1 + 0.06F * fbm(place * 0.3F, {.octaves = 4, .seed = 116}) +
        0.10F * fbm(place * 14, resolved({.octaves = 3, .seed = 117}, detail * 14));
    const Rgb sand = color(0xe0a066) * mottle;
    const Rgb light = color(0xffc58a) * (2.1F * sun) + color(0x8f9cc9) * (0.34F * open) +
                      color(0xc98a5a) * (0.16F * (1 - normal.z));
    const float haze = 1 - exponential(-square(distance / 150));
    return mix(sand * light, skyAt({p.x, 0.40F}), haze * 0.9F);
}

} // namespace

Painter paintDunes(const Frame& frame, base::WorkerPool& pool) {
    const Camera camera{
        .height = 8.5F, .horizon = 0.30F, .focal = 1.25F, .nearest = 3, .farthest = 400};
    const auto relief = std::make_shared<Relief>(frame, camera, duneHeight, pool);
    return [relief](Vec2 p) {
        return seen(*relief, p, [&](Vec2 place, float d) { return duneAt(*relief, place, d); });
    };
}

} // namespace vantro::backgrounds
