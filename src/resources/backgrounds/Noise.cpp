#include "resources/backgrounds/Noise.h"

#include <algorithm>
#include <array>

namespace vantro::backgrounds {
namespace {

// Four octaves, or the same octave at four places, are computed at once: portable vector types that
// compilers turn into whatever the processor has, with the same results.
using Floats = float __attribute__((vector_size(16)));
using Ints = std::int32_t __attribute__((vector_size(16)));
using Words = std::uint32_t __attribute__((vector_size(16)));

constexpr float lacunarity = 2.03F;
// A turn that no small number of octaves brings back to the axes.
constexpr float octaveTurn = 0.6435F;

Words hashed(Words h) {
    // One round is enough for corners whose coordinates have been multiplied already.
    h ^= h >> 15;
    h *= 0x2c1b3c6dU;
    return h ^ (h >> 13);
}

Floats faded(Floats t) {
    return t * t * t * (t * (t * 6 - 15) + 10);
}
Floats fadedSlope(Floats t) {
    return 30 * t * t * (t * (t - 2) + 1);
}

struct Gradients {
    Floats x;
    Floats y;
    explicit Gradients(Words hash)
        : x(__builtin_convertvector((Ints)(hash & 0xffffU), Floats) * (2 / 65535.F) - 1)
        , y(__builtin_convertvector((Ints)(hash >> 16), Floats) * (2 / 65535.F) - 1) {}
};

struct Sample {
    Floats value;
    Floats slopeX;
    Floats slopeY;
};

Floats between(Floats a, Floats b, Floats t) {
    return a + t * (b - a);
}

/// Inlined, so that what a caller does not use is not computed.
inline Sample gradientNoise(Floats x, Floats y, Words seed) {
    Ints cellX = __builtin_convertvector(x, Ints);
    Ints cellY = __builtin_convertvector(y, Ints);
    cellX += (Ints)(__builtin_convertvector(cellX, Floats) > x); // a true lane is -1
    cellY += (Ints)(__builtin_convertvector(cellY, Floats) > y);
    const Floats fx = x - __builtin_convertvector(cellX, Floats);
    const Floats fy = y - __builtin_convertvector(cellY, Floats);
    const Words left = (Words)cellX * 0x8da6b343U;
    const Words right = left + 0x8da6b343U;
    const Words top = (Words)cellY * 0xd8163841U + seed;
    const Words bottom = top + 0xd8163841U;
    const Gradients ga(hashed(left ^ top));
    const Gradients gb(hashed(right ^ top));
    const Gradients gc(hashed(left ^ bottom));
    const Gradients gd(hashed(right ^ bottom));
    const Floats a = ga.x * fx + ga.y * fy;
    const Floats b = gb.x * (fx - 1) + gb.y * fy;
    const Floats c = gc.x * fx + gc.y * (fy - 1);
    const Floats d = gd.x * (fx - 1) + gd.y * (fy - 1);
    const Floats u = faded(fx);
    const Floats v = faded(fy);
    const Floats upper = between(a, b, u);
    const Floats lower = between(c, d, u);
    const Floats slopeX = between(between(ga.x, gb.x, u), between(gc.x, gd.x, u), v) +
                          fadedSlope(fx) * between(b - a, d - c, v);
    const Floats slopeY = between(between(ga.y, gb.y, u), between(gc.y, gd.y, u), v) +
                          fadedSlope(fy) * (lower - upper);
    return {between(upper, lower, v) * 1.5F, slopeX * 1.5F, slopeY * 1.5F};
}

/// The coordinates of four neighbouring octaves.
struct OctaveGroup {
    Floats xx{};
    Floats xy{};
    Words seeds{};
    // The turn alone, to bring slopes back to the picture's axes.
    Floats turnX{};
    Floats turnY{};
};

OctaveGroup makeGroup(int first) {
    OctaveGroup group;
    float scale = 1;
    for (int octave = 0; octave < first + 4; ++octave, scale *= lacunarity) {
        if (octave < first)
            continue;
        const float angle = octaveTurn * static_cast<float>(octave);
        group.turnX[octave - first] = cosine(angle);
        group.turnY[octave - first] = sine(angle);
        group.xx[octave - first] = cosine(angle) * scale;
        group.xy[octave - first] = sine(angle) * scale;
        group.seeds[octave - first] = hashOf(static_cast<std::uint32_t>(octave) + 77U);
    }
    return group;
}

constexpr int maxOctaves = 16;

const std::array<OctaveGroup, maxOctaves / 4>& groups() {
    static const std::array table{makeGroup(0), makeGroup(4), makeGroup(8), makeGroup(12)};
    return table;
}

inline Sample octaves(Vec2 p, const OctaveGroup& group, std::uint32_t seed) {
    // The fraction keeps the lattices of all octaves from meeting at the origin.
    return gradientNoise(p.x * group.xx - p.y * group.xy + 0.371F,
                         p.x * group.xy + p.y * group.xx + 0.829F, group.seeds ^ seed);
}

/// Sums `shape(value)` of every octave, weighted by the gains; the weights add up to 1.
template <typename Shape>
float summed(Vec2 p, const Fractal& fractal, const Shape& shape) {
    const auto& table = groups();
    const std::uint32_t seed = hashOf(fractal.seed);
    const int count = std::min(fractal.octaves, maxOctaves);
    float sum = 0;
    float amplitude = 1;
    float total = 0;
    for (int octave = 0; octave < count; ++octave, amplitude *= fractal.gain)
        total += amplitude;
    amplitude = 1;
    float left = std::min(fractal.visible, static_cast<float>(count));
    for (std::size_t group = 0; left > 0; ++group) {
        const Floats values = octaves(p, table[group], seed).value;
        for (int lane = 0; lane < 4 && left > 0; ++lane, left -= 1) {
            sum += amplitude * std::min(left, 1.F) * shape(values[lane]);
            amplitude *= fractal.gain;
        }
    }
    return sum / total;
}

} // namespace

float noise(Vec2 p, std::uint32_t seed) {
    const Floats x = {p.x, 0, 0, 0};
    const Floats y = {p.y, 0, 0, 0};
    return gradientNoise(x, y, Words{hashOf(seed), 0, 0, 0}).value[0];
}

float lineNoise(float x, std::uint32_t seed) {
    const float cell = floorOf(x);
    const auto index = static_cast<std::int32_t>(cell);
    const float t = x - cell;
    return 2 * mix(unitOf(hashOf(index, 1, seed)), unitOf(hashOf(index + 1, 1, seed)),
                   t * t * (3 - 2 * t)) -
           1;
}

float fbm(Vec2 p, const Fractal& fractal) {
    return summed(p, fractal, [](float value) { return value; }) * 1.4F;
}

float ridged(Vec2 p, const Fractal& fractal) {
    // An octave counts more where the coarser one has its crest: valleys stay smooth.
    float weight = 1;
    return summed(p, fractal, [&weight](float value) {
        const float crest = square(1 - std::min(1.F, std::abs(value) * 1.4F)) * weight;
        weight = saturate(crest * 1.8F);
        return crest;
    });
}

float eroded(Vec2 p, const Fractal& fractal) {
    const auto& table = groups();
    const std::uint32_t seed = hashOf(fractal.seed);
    float sum = 0;
    float amplitude = 0.5F;
    Vec2 slope{};
    float left =
        std::min(fractal.visible, static_cast<float>(std::min(fractal.octaves, maxOctaves)));
    for (std::size_t group = 0; left > 0; ++group) {
        const Sample sample = octaves(p, table[group], seed);
        // Slopes in the picture's axes, but each octave's in its own unit of length.
        const auto& turn = table[group];
        const Floats slopeX = turn.turnX * sample.slopeX + turn.turnY * sample.slopeY;
        const Floats slopeY = turn.turnX * sample.slopeY - turn.turnY * sample.slopeX;
        for (int lane = 0; lane < 4 && left > 0; ++lane, left -= 1) {
            slope = slope + Vec2{slopeX[lane], slopeY[lane]};
            sum += amplitude * std::min(left, 1.F) * sample.value[lane] / (1 + dot(slope, slope));
            amplitude *= fractal.gain;
        }
    }
    return sum * 2;
}

float billow(Vec2 p, const Fractal& fractal) {
    return summed(p, fractal, [](float value) { return std::min(1.F, std::abs(value) * 1.6F); });
}

Vec2 warp(Vec2 p, const Fractal& fractal) {
    Fractal other = fractal;
    other.seed = hashOf(fractal.seed + 0x51edU);
    return {fbm(p, fractal), fbm(p + Vec2{5.2F, 1.3F}, other)};
}

Fractal resolved(Fractal fractal, float footprint) {
    // An octave of size s shows while s is above two pixels.
    const float room = -log2Of(std::max(footprint * 2, 1e-9F)) / 1.0215F; // log2(lacunarity)
    fractal.visible = clamp(room + 1, 0, fractal.visible);
    return fractal;
}

Cells cells(Vec2 p, std::uint32_t seed, float jitter) {
    const auto baseX = static_cast<std::int32_t>(floorOf(p.x));
    const auto baseY = static_cast<std::int32_t>(floorOf(p.y));
    Cells result{.nearest = 1e9F, .second = 1e9F, .id = 0, .toNearest = {}};
    for (std::int32_t y = baseY - 1; y <= baseY + 1; ++y) {
        for (std::int32_t x = baseX - 1; x <= baseX + 1; ++x) {
            const std::uint32_t hash = hashOf(x, y, seed);
            const Vec2 point{static_cast<float>(x) + 0.5F + (unitOf(hash) - 0.5F) * jitter,
                             static_cast<float>(y) + 0.5F + (unitOf(hashOf(hash)) - 0.5F) * jitter};
            const Vec2 to = point - p;
            const float distance = dot(to, to);
            if (distance < result.nearest) {
                result.second = result.nearest;
                result.nearest = distance;
                result.id = hash;
                result.toNearest = to;
            } else if (distance < result.second) {
                result.second = distance;
            }
        }
    }
    result.nearest = std::sqrt(result.nearest);
    result.second = std::sqrt(result.second);
    return result;
}

} // namespace vantro::backgrounds
