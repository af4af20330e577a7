#include "backgrounds/Noise.h"
#include "backgrounds/Relief.h"
#include "backgrounds/painters/Painters.h"

#include <algorithm>
#include <memory>

// Above a sea of clouds as the sun rises.
namespace vantro::backgrounds {
namespace {

constexpr float horizon = 0.45F;
constexpr Vec2 sunPlace{1.22F, 0.395F};

float cloudTop(Vec2 p, float footprint) {
    const Vec2 q = p * 0.055F + Vec2{7.7F, 3.4F};
    const Vec2 bent = q + warp(q * 0.7F, {.octaves = 3, .gain = 0.5F, .seed = 971}) * 0.4F;
    const float swell = fbm(bent * 0.5F, {.octaves = 3, .seed = 972});
    const float heaps = 1 - ridged(bent * 1.1F, resolved({.octaves = 2, .gain = 0.4F, .seed = 973},
                                                         footprint * 0.06F));
    const float towers = smoothstep(0.05F, 0.75F, swell + 0.25F);
    const float lumps = billow(
        bent * 2.6F, resolved({.octaves = 7, .gain = 0.52F, .seed = 974}, footprint * 0.14F));
    // The nearest clouds stay low: towers right before the eye would look like rock.
    const float room = 0.35F + 0.65F * smoothstep(6, 26, p.y);
    return 3.2F * swell + (0.8F + 3.0F * towers * room) * (0.55F * heaps + 1.25F * (lumps - 0.3F));
}

float awayFromSun(Vec2 p) {
    return length(Vec2{(p.x - sunPlace.x) * 0.8F, p.y - sunPlace.y});
}

Rgb clearSkyAt(Vec2 p) {
    static const Gradient gradient{
        {0, 0x34528f}, {0.18F, 0x6c7fb4}, {0.32F, 0xc3a3b4}, {0.41F, 0xf9bf98}, {0.47F, 0xffd8a2}};
    return gradient(p.y) + color(0xffb060) * (0.85F * exponential(-awayFromSun(p) * 4.2F));
}

Rgb skyAt(Vec2 p) {
    const Vec2 q{p.x * 0.9F, p.y * 7};
    const float streak =
        fbm(q + warp(q * 0.8F, {.octaves = 3, .seed = 981}) * 0.4F, {.octaves = 7, .seed = 982});
    return mix(clearSkyAt(p), color(0xffc3a0) * (0.8F + 0.5F * exponential(-awayFromSun(p) * 2.5F)),
               0.5F * smoothstep(0.1F, 0.75F, streak));
}

Rgb sunDiscAt(Vec2 p) {
    return color(0xfff0d0) * (2.5F * exponential(-square(length(p - sunPlace) / 0.026F)));
}

Rgb cloudsAt(const Relief& relief, Vec2 p, float distance) {
    if (distance == Relief::sky)
        return skyAt(p) + sunDiscAt(p);
    const Vec3 toSun = normalized({0.30F, 0.88F, 0.30F});
    const Vec2 place = relief.ground(p, distance);
    const float detail = relief.footprint(distance);
    const Vec3 fine = relief.surface(place, detail + 0.03F).normal;
    const Vec3 broad = relief.broadNormal(place, 0.5F + detail);
    const Vec3 normal = normalized(fine * 0.38F + broad * 0.62F);
    // Light wanders inside a cloud: no side is quite dark, and hollows stay blue.
    const float wrapped = saturate((dot(normal, toSun) + 0.35F) / 1.35F);
    const float sun = wrapped * (0.35F + 0.65F * relief.sunlight(place, toSun, 30, 0.6F));
    const float hollow = smoothstep(-3.2F, 2.6F, relief.roughHeight(place));
    const float near = exponential(-square((p.x - sunPlace.x) * 1.1F));
    const Rgb light =
        mix(color(0xff9f78), color(0xffcf98), near) * (1.55F * sun * (0.6F + 0.6F * near)) +
        mix(color(0x4d63a4), color(0x99a2d4), hollow) * (0.40F + 0.12F * normal.z);
    const float haze = 1 - exponential(-power(distance / 120, 1.7F));
    return mix(light * 0.92F, clearSkyAt({p.x, horizon - 0.012F}), haze);
}

} // namespace

Painter paintClouds(const Frame& frame, base::WorkerPool& pool) {
    const Camera camera{
        .height = 9, .horizon = horizon, .focal = 1.1F, .nearest = 3, .farthest = 480};
    const auto relief = std::make_shared<Relief>(frame, camera, cloudTop, pool);
    return [relief](Vec2 p) {
        return seen(*relief, p, [&](Vec2 place, float d) { return cloudsAt(*relief, place, d); });
    };
}

} // namespace vantro::backgrounds
