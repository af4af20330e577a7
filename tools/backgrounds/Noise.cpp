#include "backgrounds/Noise.h"

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

[[gnu::always_inline]] inline Words hashed(Words h) {
    // One round is enough for corners whose coordinates have been multiplied already.
    h ^= h >> 15;
    h *= 0x2c1b3c6dU;
    return h ^ (h >> 13) ^ 0x80008000U;
}

[[gnu::always_inline]] inline Floats faded(Floats t) {
    return t * t * t * (t * (t * 6 - 15) + 10);
}
[[gnu::always_inline]] inline Floats fadedSlope(Floats t) {
    return 30 * t * t * (t * (t - 2) + 1);
}

/// Gradients as whole numbers of `gradientUnit`: scaling them once, in the sum, is cheaper.
struct Gradients {
    Floats x;
    Floats y;
    explicit Gradients(Words hash)
        : x(__builtin_convertvector((Ints)(hash << 16) >> 16, Floats))
        , y(__builtin_convertvector((Ints)hash >> 16, Floats)) {}
};
// Brings noise to about -1 to 1.
constexpr float gradientUnit = 1.5F / 32768;

struct Sample {
    Floats value;
    Floats slopeX;
    Floats slopeY;
};

[[gnu::always_inline]] inline Floats between(Floats a, Floats b, Floats t) {
    return a + t * (b - a);
}

/// The corners of the cells around four places, and where the places lie in them.
struct Cell {
    Floats fx;
    Floats fy;
    Gradients topLeft;
    Gradients topRight;
    Gradients bottomLeft;
    Gradients bottomRight;
};

[[gnu::always_inline]] inline Cell cellAround(Floats x, Floats y, Words seed) {
    Ints cellX = __builtin_convertvector(x, Ints);
    Ints cellY = __builtin_convertvector(y, Ints);
    cellX += (Ints)(__builtin_convertvector(cellX, Floats) > x); // a true lane is -1
    cellY += (Ints)(__builtin_convertvector(cellY, Floats) > y);
    const Words left = (Words)cellX * 0x8da6b343U;
    const Words right = left + 0x8da6b343U;
    const Words top = (Words)cellY * 0xd8163841U + seed;
    const Words bottom = top + 0xd8163841U;
    return {.fx = x - __builtin_convertvector(cellX, Floats),
            .fy = y - __builtin_convertvector(cellY, Floats),
            .topLeft = Gradients(hashed(left ^ top)),
            .topRight = Gradients(hashed(right ^ top)),
            .bottomLeft = Gradients(hashed(left ^ bottom)),
            .bottomRight = Gradients(hashed(right ^ bottom))};
}

[[gnu::always_inline]] inline Floats valueIn(const Cell& cell) {
    const Floats u = faded(cell.fx);
    const Floats right = cell.fx - 1;
    const Floats below = cell.fy - 1;
    const Floats a = cell.topLeft.x * cell.fx + cell.topLeft.y * cell.fy;
    const Floats b = cell.topRight.x * right + cell.topRight.y * cell.fy;
    const Floats c = cell.bottomLeft.x * cell.fx + cell.bottomLeft.y * below;
    const Floats d = cell.bottomRight.x * right + cell.bottomRight.y * below;
    const Floats upper = between(a, b, u);
    return between(upper, between(c, d, u), faded(cell.fy)) * gradientUnit;
}

[[gnu::always_inline]] inline Floats gradientNoise(Floats x, Floats y, Words seed) {
    return valueIn(cellAround(x, y, seed));
}

[[gnu::always_inline]] inline Sample gradientNoiseWithSlope(Floats x, Floats y, Words seed) {
    const Cell cell = cellAround(x, y, seed);
    const auto& [fx, fy, ga, gb, gc, gd] = cell;
    const Floats a = ga.x * fx + ga.y * fy;
    const Floats b = gb.x * (fx - 1) + gb.y * fy;
    const Floats c = gc.x * fx + gc.y * (fy - 1);
    const Floats d = gd.x * (fx - 1) + gd.y * (fy - 1);
    const Floats u = faded(fx);
    const Floats v = faded(fy);
    const Floats slopeX = between(between(ga.x, gb.x, u), between(gc.x, gd.x, u), v) +
                          fadedSlope(fx) * between(b - a, d - c, v);
    const Floats slopeY = between(between(ga.y, gb.y, u), between(gc.y, gd.y, u), v) +
                          fadedSlope(fy) * (between(c, d, u) - between(a, b, u));
    return {valueIn(cell), slopeX * gradientUnit, slopeY * gradientUnit};
}

/// The coordinates of four neighboring octaves.
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

// The fraction keeps the lattices of all octaves from meeting at the origin.
[[gnu::always_inline]] inline Floats xIn(const OctaveGroup& group, Vec2 p) {
    return p.x * group.xx - p.y * group.xy + 0.371F;
}
[[gnu::always_inline]] inline Floats yIn(const OctaveGroup& group, Vec2 p) {
    return p.x * group.xy + p.y * group.xx + 0.829F;
}

/// How much of each octave from `first` on counts, if `count` of them do.
[[gnu::always_inline]] inline Floats countedFrom(float first, float count) {
    Floats share = count - first - Floats{0, 1, 2, 3};
    share = share > 1.F ? Floats{1, 1, 1, 1} : share;
    return share < 0.F ? Floats{} : share;
}

[[gnu::always_inline]] inline float sumOf(Floats lanes) {
    return (lanes[0] + lanes[1]) + (lanes[2] + lanes[3]);
}

/// The mean of `shape(octaves)`, weighted by the gains. `shape` takes four octaves at a time.
template <typename Shape>
[[gnu::always_inline]] inline float summed(Vec2 p, const Fractal& fractal, Shape shape) {
    const auto& table = groups();
    const std::uint32_t seed = hashOf(fractal.seed);
    const auto octaves = static_cast<std::size_t>(std::clamp(fractal.octaves, 1, maxOctaves));
    const auto count = static_cast<float>(octaves);
    const float visible = std::min(fractal.visible, count);
    const float gain2 = fractal.gain * fractal.gain;
    Floats amplitudes{1, fractal.gain, gain2, gain2 * fractal.gain};
    Floats sum{};
    Floats total{};
    for (std::size_t group = 0; 4 * group < octaves; ++group) {
        const auto first = static_cast<float>(4 * group);
        total += amplitudes * countedFrom(first, count);
        if (first < visible) {
            const Floats values = gradientNoise(xIn(table[group], p), yIn(table[group], p),
                                                table[group].seeds ^ seed);
            sum += amplitudes * countedFrom(first, visible) * shape(values);
        }
        amplitudes *= gain2 * gain2;
    }
    return sumOf(sum) / sumOf(total);
}

[[gnu::always_inline]] inline Floats magnitude(Floats lanes) {
    return lanes < 0.F ? -lanes : lanes;
}
[[gnu::always_inline]] inline Floats atMostOne(Floats lanes) {
    return lanes > 1.F ? Floats{1, 1, 1, 1} : lanes;
}

} // namespace

// Compiled a second time for processors with wider instructions, which the loader picks; both round
// alike, as no operation is fused or reordered.
#if defined(__x86_64__) && !defined(__clang__)
[[gnu::target_clones("avx2", "default")]] float noise(Vec2 p, std::uint32_t seed);
[[gnu::target_clones("avx2", "default")]] float fbm(Vec2 p, const Fractal& fractal);
[[gnu::target_clones("avx2", "default")]] float ridged(Vec2 p, const Fractal& fractal);
[[gnu::target_clones("avx2", "default")]] float eroded(Vec2 p, const Fractal& fractal);
[[gnu::target_clones("avx2", "default")]] float billow(Vec2 p, const Fractal& fractal);
[[gnu::target_clones("avx2", "default")]] Vec2
twoOctaveWarp(Vec2 p, Vec2 apart, const Fractal& fractal, std::uint32_t otherSeed);
#endif

float noise(Vec2 p, std::uint32_t seed) {
    const Floats x = {p.x, 0, 0, 0};
    const Floats y = {p.y, 0, 0, 0};
    return gradientNoise(x, y, Words{hashOf(seed), 0, 0, 0})[0];
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
    return summed(p, fractal, [](Floats values) { return values; }) * 1.4F;
}

float ridged(Vec2 p, const Fractal& fractal) {
    // An octave counts more where the coarser one has its crest: valleys stay smooth.
    float weight = 1;
    return summed(p, fractal, [&weight](Floats values) {
        Floats crests = 1 - atMostOne(magnitude(values) * 1.4F);
        crests *= crests;
        for (int lane = 0; lane < 4; ++lane) {
            crests[lane] *= weight;
            weight = saturate(crests[lane] * 1.8F);
        }
        return crests;
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
        const auto& turn = table[group];
        const Sample sample = gradientNoiseWithSlope(xIn(turn, p), yIn(turn, p), turn.seeds ^ seed);
        // Slopes in the picture's axes, but each octave's in its own unit of length.
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

/// warp() where two octaves of both fields fit into one group of four.
Vec2 twoOctaveWarp(Vec2 p, Vec2 apart, const Fractal& fractal, std::uint32_t otherSeed) {
    const auto& group = groups()[0];
    const Floats x = xIn(group, p);
    const Floats y = yIn(group, p);
    const Floats otherX = xIn(group, apart);
    const Floats otherY = yIn(group, apart);
    const Words seeds = group.seeds ^ hashOf(fractal.seed);
    const Words otherSeeds = group.seeds ^ hashOf(otherSeed);
    const Floats values = gradientNoise(Floats{x[0], x[1], otherX[0], otherX[1]},
                                        Floats{y[0], y[1], otherY[0], otherY[1]},
                                        Words{seeds[0], seeds[1], otherSeeds[0], otherSeeds[1]});
    const float scale = 1.4F / (1 + fractal.gain);
    return {(values[0] + fractal.gain * values[1]) * scale,
            (values[2] + fractal.gain * values[3]) * scale};
}

float billow(Vec2 p, const Fractal& fractal) {
    return summed(p, fractal, [](Floats values) { return atMostOne(magnitude(values) * 1.6F); });
}

Vec2 warp(Vec2 p, const Fractal& fractal) {
    Fractal other = fractal;
    other.seed = hashOf(fractal.seed + 0x51edU);
    const Vec2 apart = p + Vec2{5.2F, 1.3F};
    if (fractal.octaves == 2 && fractal.visible >= 2)
        return twoOctaveWarp(p, apart, fractal, other.seed);
    return {fbm(p, fractal), fbm(apart, other)};
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
