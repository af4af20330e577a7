#include "backgrounds/Noise.h"
#include "backgrounds/painters/Painters.h"

#include <algorithm>

// Rippled sand at low tide, with the evening sky in what water is left.
namespace vantro::backgrounds {
namespace {

constexpr float horizon = -0.75F;

float bedAt(Vec2 p) {
    return 0.85F * noise(Vec2{p.x * 0.33F, p.y * 0.42F}, 991) + 0.3F * noise(p * 0.9F, 992);
}

/// Height of the ripples, about -1 to 1: gentle towards the sea, steeper on the far side.
float rippleAt(Vec2 p) {
    const Vec2 bend = warp(p * 0.42F, {.octaves = 3, .gain = 0.5F, .seed = 993});
    // Fast changes of phase across the wind make crests fork and end.
    const float join = noise(Vec2{p.x * 1.5F, p.y * 1.1F}, 994) + 0.5F * noise(p * 2.9F, 998);
    const float phase = p.y * 31 + p.x * 5 + 13 * bend.x + 3.6F * join;
    const float wave = sine(phase + 0.35F * sine(phase + 0.9F));
    const float strength =
        0.30F + 0.70F * smoothstep(-0.5F, 0.5F, noise(p * 0.8F + bend * 0.6F, 995));
    return wave * strength + 0.18F * sine(phase * 0.5F + 3 * bend.y);
}

float surfaceAt(Vec2 p, float footprint) {
    return 0.0145F * rippleAt(p) + 0.060F * bedAt(p) +
           0.0022F *
               fbm(p * 11, resolved({.octaves = 6, .gain = 0.62F, .seed = 996}, footprint * 11));
}

Rgb reflectedSky(float x, float height) {
    static const Gradient gradient{
        {0, 0xffc48c}, {0.16F, 0xf7a78f}, {0.36F, 0xc48fae}, {0.62F, 0x7f86bd}, {1, 0x4f6aa6}};
    const float cloud = fbm(Vec2{x * 0.9F, height * 2.6F}, {.octaves = 4, .seed = 997});
    return gradient(height + 0.05F * cloud) * (1 + 0.22F * cloud);
}

Rgb sandAt(Vec2 p, const Frame& frame) {
    const float down = p.y - horizon;
    const float distance = 3.F / down;
    const Vec2 place{(p.x - frame.aspect() / 2) * distance * 1.1F, distance * 2.4F};
    const float footprint = distance * frame.pixel() * (1.1F + distance * 0.5F);
    const float height = surfaceAt(place, footprint);
    constexpr float water = -0.011F;
    const float step = std::max(footprint * 0.7F, 0.004F);
    const Vec2 slope{(surfaceAt(place + Vec2{step, 0}, footprint) - height) / step,
                     (surfaceAt(place + Vec2{0, step}, footprint) - height) / step};
    const Vec3 normal = normalized({-slope.x, -slope.y, 1});
    const Vec3 toSun = normalized({0.25F, 0.80F, 0.38F});
    const float sun = saturate(dot(normal, toSun));
    const float above = height - water;
    const float wet = smoothstep(0.040F, 0.0F, above);
    const float speckle =
        1 + 0.10F * fbm(place * 34,
                        resolved({.octaves = 3, .gain = 0.8F, .seed = 998}, footprint * 34));
    const Rgb body = mix(color(0xc4ab98), color(0x77655f), wet) * speckle;
    const Rgb light = color(0xffc8a0) * (1.25F * sun) + color(0x95a3d6) * (0.36F + 0.1F * normal.z);
    // A wet grain surface mirrors the sky where it tilts towards the light.
    const float tilt = saturate(0.26F + 0.5F * p.y - 1.0F * slope.y);
    const float facing = saturate(0.30F + 0.30F * p.y - 1.1F * slope.y);
    const float shine = power(1 - facing, 4) * (0.16F + 0.80F * wet);
    Rgb result = mix(body * light, reflectedSky(place.x * 0.4F, tilt), saturate(shine));
    const float pool = smoothstep(0.0025F, -0.0025F, above);
    const float still = 0.02F * fbm(place * 3, {.octaves = 3, .seed = 999});
    const float depth = saturate(-above / 0.04F);
    const Rgb mirror = reflectedSky(place.x * 0.4F, 0.12F + 0.60F * p.y + still);
    const Rgb bottom = body * light * (0.5F - 0.25F * depth);
    return mix(result, mix(bottom, mirror, 0.78F - 0.2F * p.y), pool);
}

} // namespace

Painter paintWetSand(const Frame& frame, base::WorkerPool&) {
    return [frame](Vec2 p) { return sandAt(p, frame); };
}

} // namespace vantro::backgrounds
