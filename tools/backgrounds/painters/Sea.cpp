#include "backgrounds/Noise.h"
#include "backgrounds/painters/Painters.h"
#include "backgrounds/painters/Sky.h"

#include <algorithm>

// The open sea just after sunset.
namespace vantro::backgrounds {
namespace {

constexpr float horizon = 0.46F;
constexpr float sunX = 0.62F;

struct Palettes {
    Gradient sky{
        {0, 0x1b2550}, {0.16F, 0x3d3c74}, {0.28F, 0x8a5a86}, {0.38F, 0xe08a78}, {0.46F, 0xffc37e}};
};

Rgb skyAt(const Palettes& palettes, Vec2 p) {
    const float glow = exponential(-length(Vec2{(p.x - sunX) * 0.55F, p.y - horizon}) * 5.5F);
    const Vec2 q{p.x * 1.0F + 0.4F, p.y * (5 + 4 * p.y)};
    const Vec2 bent = q + warp(q * 0.7F, {.octaves = 3, .seed = 301}) * 0.35F;
    const float cloud = fbm(bent, {.octaves = 7, .gain = 0.5F, .seed = 302});
    const float thick = smoothstep(0.02F, 0.6F, cloud) * smoothstep(horizon, 0.36F, p.y);
    const Rgb clear = palettes.sky(p.y) + color(0xff9a4a) * (0.9F * glow);
    // Lit from below the horizon: undersides glow where the layer is thin.
    const Rgb lit = mix(color(0xff8f6a), color(0x4a3a63), smoothstep(0.2F, 0.9F, thick)) *
                    (0.55F + 0.9F * glow + 0.35F * p.y);
    return mix(clear, lit, thick * 0.72F);
}

/// The slope of the water towards the eye (y) and sideways (x).
Vec2 slopeAt(Vec2 place, float footprint) {
    const auto wave = [&](Vec2 p) {
        const float swell = 0.40F * sine(p.y * 0.8F + p.x * 0.2F + 2 * noise(p * 0.12F, 303));
        const Vec2 q{p.x * 0.42F, p.y * 1.0F};
        return swell + 0.62F * fbm(q * 0.8F, resolved({.octaves = 7, .gain = 0.46F, .seed = 304},
                                                      footprint * 0.8F));
    };
    const float step = std::max(footprint * 0.5F, 0.01F);
    const float here = wave(place);
    return {(wave(place + Vec2{step, 0}) - here) / step,
            (wave(place + Vec2{0, step}) - here) / step};
}

Rgb seaAt(const Palettes& palettes, Vec2 p, const Frame& frame) {
    const float down = std::max(p.y - horizon, frame.pixel() * 0.3F);
    const float distance = 2.2F / down;
    const Vec2 place{(p.x - frame.aspect() / 2) * distance, distance};
    // Far water is seen at a flat angle: a pixel covers much of it lengthways.
    const float footprint = distance * frame.pixel() * (1 + distance * 0.06F);
    const Vec2 slope = slopeAt(place, footprint) * (0.27F / (1 + 0.006F * distance));
    const float facing = saturate(down * 1.1F + 0.9F * slope.y + 0.03F);
    const float fresnel = 0.03F + 0.97F * power(1 - facing, 5);
    const float upward = std::abs(down * 1.0F + slope.y * 0.55F) + 0.012F;
    const Vec2 mirrored{p.x + slope.x * 0.35F, std::max(0.F, horizon - upward)};
    const Rgb reflected =
        palettes.sky(mirrored.y) +
        color(0xff9a4a) * (1.25F * exponential(-length(Vec2{(mirrored.x - sunX) * 1.5F,
                                                            (horizon - mirrored.y) * 0.9F}) *
                                               6.F));
    const Rgb deep = mix(color(0x0a2036), color(0x1e4258), saturate(0.4F + slope.y));
    const Rgb water = mix(deep, reflected, saturate(fresnel));
    const float haze = exponential(-down * 55);
    return mix(water, palettes.sky(0.42F), 0.6F * haze);
}

} // namespace

Painter paintSea(const Frame& frame, base::WorkerPool&) {
    return [palettes = Palettes{}, frame](Vec2 p) {
        const float cover = coverage(p.y - horizon, frame.pixel() * 2);
        if (cover <= 0)
            return skyAt(palettes, p);
        const Rgb sea = seaAt(palettes, p, frame);
        return cover >= 1 ? sea : mix(skyAt(palettes, p), sea, cover);
    };
}

} // namespace vantro::backgrounds
