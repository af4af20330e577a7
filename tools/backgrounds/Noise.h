#pragma once

#include "backgrounds/FloatMath.h"

#include <cstdint>

// Random fields. Every function is pure: the same arguments give the same bits everywhere.
namespace vantro::backgrounds {

/// Uniform over all 32-bit values.
constexpr std::uint32_t hashOf(std::uint32_t h) {
    h ^= h >> 16;
    h *= 0x7feb352dU;
    h ^= h >> 15;
    h *= 0x846ca68bU;
    h ^= h >> 16;
    return h;
}
constexpr std::uint32_t hashOf(std::int32_t x, std::int32_t y, std::uint32_t seed) {
    return hashOf(static_cast<std::uint32_t>(x) * 0x8da6b343U ^
                  hashOf(static_cast<std::uint32_t>(y) * 0xd8163841U + seed));
}
/// 0 to 1.
constexpr float unitOf(std::uint32_t hash) {
    return static_cast<float>(hash >> 8) * 0x1p-24F;
}

/// A stream of numbers for placing things.
class Dice {
  public:
    constexpr explicit Dice(std::uint32_t seed) : m_state(hashOf(seed + 0x9e3779b9U)) {}
    constexpr float unit() { return unitOf(next()); }
    constexpr float between(float low, float high) { return mix(low, high, unit()); }
    /// Close to a normal distribution of standard deviation 1.
    constexpr float bell() {
        float sum = 0;
        for (int i = 0; i < 6; ++i)
            sum += unit();
        return (sum - 3) * 1.41421356F;
    }

  private:
    constexpr std::uint32_t next() {
        m_state += 0x9e3779b9U;
        return hashOf(m_state);
    }
    std::uint32_t m_state;
};

struct Fractal {
    int octaves = 5;
    /// Amplitude of each octave relative to the one before.
    float gain = 0.5F;
    std::uint32_t seed = 0;
    /// How many octaves show, the last one in part; those beyond keep their share of the range.
    float visible = 16;
};

/// One octave of gradient noise, about -1 to 1, with features the size of 1.
float noise(Vec2 p, std::uint32_t seed);
/// The same along a line: quicker, and rougher.
float lineNoise(float x, std::uint32_t seed);
/// Octaves of noise, each rotated against the others so that no lattice shows; about -1 to 1.
float fbm(Vec2 p, const Fractal& fractal);
/// Sharp crests on smooth valleys, 0 to 1.
float ridged(Vec2 p, const Fractal& fractal);
/// Terrain: fbm whose fine octaves fade on slopes, which leaves worn flanks under rough tops; about
/// -1 to 1.
float eroded(Vec2 p, const Fractal& fractal);
/// Round lumps between sharp valleys, 0 to 1.
float billow(Vec2 p, const Fractal& fractal);
/// Two independent fbm fields: a displacement to warp other fields by.
Vec2 warp(Vec2 p, const Fractal& fractal);
/// `fractal` with the octaves faded out that are smaller than `footprint`, the size of a pixel in
/// the noise's units: what is too fine to show would only alias.
Fractal resolved(Fractal fractal, float footprint);

/// Distances to the nearest and to the second nearest of the points scattered one per unit cell.
struct Cells {
    float nearest = 0;
    float second = 0;
    std::uint32_t id = 0; ///< of the nearest point
    Vec2 toNearest;
};
Cells cells(Vec2 p, std::uint32_t seed, float jitter = 0.9F);

} // namespace vantro::backgrounds
