#pragma once

#include "backgrounds/Palette.h"

#include <cstdint>

namespace vantro::backgrounds {

/// The light of stars at `p`. `density` is how many of the faint ones a picture height squared
/// holds, in thousands; `pixel` the side of a pixel, below which no star shrinks.
Rgb starsAt(Vec2 p, float density, float pixel, std::uint32_t seed);

/// The height of a mountain skyline: fbm whose fine detail stays rough, about -1 to 1.
float skyline(float x, int octaves, std::uint32_t seed);

/// How much of a pixel lies below an edge; `depth` is how far its middle does.
constexpr float coverage(float depth, float pixel) {
    return saturate(depth / pixel + 0.5F);
}

} // namespace vantro::backgrounds
