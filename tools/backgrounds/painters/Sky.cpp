#include "backgrounds/painters/Sky.h"

#include "backgrounds/Noise.h"

#include <algorithm>

namespace vantro::backgrounds {
namespace {

/// One star at most a cell, with margin enough that its disc stays inside.
Rgb starInCell(Vec2 p, float cellsPerHeight, float brightness, float pixel, std::uint32_t seed) {
    const Vec2 q = p * cellsPerHeight;
    const auto x = static_cast<std::int32_t>(floorOf(q.x));
    const auto y = static_cast<std::int32_t>(floorOf(q.y));
    Dice dice(hashOf(x, y, seed));
    if (dice.unit() > 0.6F)
        return {};
    const Vec2 place{static_cast<float>(x) + dice.between(0.25F, 0.75F),
                     static_cast<float>(y) + dice.between(0.25F, 0.75F)};
    const float distance = length(q - place) / cellsPerHeight;
    const float radius = std::max(0.00042F, 0.6F * pixel);
    // Few stars are bright: magnitudes follow a steep power.
    const float magnitude = power(dice.unit() + 0.02F, 6) * brightness;
    const float size = radius * (0.8F + 0.5F * std::sqrt(magnitude));
    const Rgb tint = mix(color(0xffd2a8), color(0xaecbff), dice.unit());
    const float shrink = square(0.00042F / radius); // a disc widened to a pixel is dimmer
    return tint * (bell(distance, size) * (0.10F * brightness + 2.2F * magnitude) * shrink);
}

} // namespace

Rgb starsAt(Vec2 p, float density, float pixel, std::uint32_t seed) {
    const float fine = std::sqrt(density * 1000 / 0.6F);
    return starInCell(p, fine, 0.35F, pixel, seed) +
           starInCell(rotated(p, 0.5F), fine * 0.41F, 1, pixel, seed + 1) +
           starInCell(rotated(p, 1.1F), fine * 0.13F, 2.2F, pixel, seed + 2);
}

float skyline(float x, int octaves, std::uint32_t seed) {
    return fbm(Vec2{x, 0.37F}, {.octaves = octaves, .gain = 0.5F, .seed = seed});
}

} // namespace vantro::backgrounds
