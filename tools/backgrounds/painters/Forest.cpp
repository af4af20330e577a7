#include "backgrounds/Noise.h"
#include "backgrounds/Profile.h"
#include "backgrounds/painters/Painters.h"
#include "backgrounds/painters/Sky.h"

#include <algorithm>
#include <span>
#include <vector>

// The edge of a fir forest that climbs into the fog.
namespace vantro::backgrounds {
namespace {

constexpr int rowCount = 7;

struct Palettes {
    Gradient fog{{0, 0xdfe6e3}, {0.5F, 0xc4d2d0}, {1, 0xa9bfbd}};
    Gradient trees{
        {0, 0xb4c5c3}, {0.3F, 0x86a19e}, {0.6F, 0x4a6b64}, {0.85F, 0x1d3a33}, {1, 0x0a1c18}};
};

float groundAt(int row, float x) {
    const auto n = static_cast<float>(row);
    const float t = n / (rowCount - 1);
    const float slope = 0.10F * (1 - t) * (x - 0.9F) * (row % 2 == 0 ? -1.F : 0.8F);
    return 0.50F + 0.64F * t + slope - 0.05F * noise(Vec2{x * 1.3F, n * 3.1F}, 501);
}

struct Fir {
    Vec2 foot;
    float height; ///< 0 where a glade is
    std::uint32_t seed;
};

/// A row of firs and the ground they stand on.
struct Row {
    Profile ground;
    float size;    ///< height of a usual fir
    float spacing; ///< one fir in each step along the row, from x = 0 on
    std::vector<Fir> firs;
};

/// How much of the pixel at `p` one fir covers, whose stem stands at `foot`.
float firAt(Vec2 p, const Fir& fir, float pixel) {
    const float height = fir.height;
    const std::uint32_t seed = fir.seed;
    const float up = (fir.foot.y - p.y) / height; // 0 at the foot, 1 at the tip
    const float lean = 0.02F * height * (unitOf(hashOf(seed)) - 0.5F);
    const float away = std::abs(p.x - fir.foot.x - lean * up);
    if (up > 1 || up < -0.3F || away > 0.33F * height)
        return 0;
    const float t = 1 - up;
    const float side = p.x < fir.foot.x + lean * up ? 0.F : 50.F;
    // Boughs: each droops outwards, so its layer is seen as a tooth of the outline; the two sides
    // grow out of step.
    const float boughs = 17 + 9 * unitOf(hashOf(seed + 1));
    const float droop = away / height * 1.1F;
    const float sway = lineNoise(side + t * 7, seed + 3);
    const float layer = (t - droop) * boughs + 0.8F * sway + side;
    const float tooth = fractionOf(layer);
    const float reach = 0.72F + 0.28F * lineNoise(floorOf(layer), seed + 4);
    const float needles =
        noise(p * (70 / height), seed) + 0.6F * noise(p * (190 / height), seed + 5);
    const float full = 0.145F + 0.065F * unitOf(hashOf(seed + 2));
    const float width = height * full * t * (1.2F - 0.4F * t) * (0.55F + 0.45F * tooth * reach) *
                        (1 + 0.30F * needles);
    const float stem = 0.007F * height * t;
    const float edge = std::max(up < 0.02F ? 0 : width, stem) - away;
    return coverage(edge, std::max(pixel * 1.5F, height * 0.003F));
}

Row makeRow(int row, const Frame& frame) {
    const auto n = static_cast<float>(row);
    const float t = n / (rowCount - 1);
    const float size = 0.10F * power(4.8F, t);
    const float spacing = size * 0.20F;
    Row result{{frame, [row](float x) { return groundAt(row, x); }}, size, spacing, {}};
    for (std::int32_t i = 0; static_cast<float>(i) * spacing < frame.aspect(); ++i) {
        const std::uint32_t hash = hashOf(i, row, 504);
        const float x = (static_cast<float>(i) + 0.1F + 0.8F * unitOf(hash)) * spacing;
        // Glades: some stems are missing where the noise says so, mostly in the nearest row.
        const float stand = noise(Vec2{x * (2.4F - t), n * 5.3F}, 505);
        const bool glade = stand < mix(-0.6F, -0.02F, t * t);
        const float height = size * (0.45F + 0.85F * square(unitOf(hashOf(hash))) + 0.3F * stand);
        result.firs.push_back(
            {{x, groundAt(row, x) + 0.02F * size}, glade ? 0 : std::max(0.F, height), hash});
    }
    return result;
}

float rowCoverage(const Row& row, Vec2 p, float pixel) {
    const float ground = row.ground(p.x);
    if (p.y < ground - row.size * 1.75F)
        return 0;
    const float size = row.size;
    float cover = coverage(p.y - ground + 0.012F * size * noise(p * (8 / size), 503), pixel * 2);
    const auto middle = static_cast<std::int32_t>(p.x / row.spacing);
    const auto last = static_cast<std::int32_t>(row.firs.size()) - 1;
    for (auto i = std::max(0, middle - 3); i <= std::min(last, middle + 3) && cover < 1; ++i) {
        const Fir& fir = row.firs[static_cast<std::size_t>(i)];
        if (fir.height > 0)
            cover += (1 - cover) * firAt(p, fir, pixel);
    }
    return cover;
}

Rgb forestAt(const Palettes& palettes, std::span<const Row> rows, Vec2 p, float pixel) {
    const float light = exponential(-length(Vec2{(p.x - 0.55F) * 0.7F, p.y - 0.12F}) * 1.9F);
    Rgb result = palettes.fog(p.y) + color(0xfff0d8) * (0.22F * light);
    for (int row = 0; row < rowCount; ++row) {
        const auto n = static_cast<float>(row);
        const float t = n / (rowCount - 1);
        const Row& shape = rows[static_cast<std::size_t>(row)];
        const float foot = p.y - shape.ground(p.x);
        if (foot < -shape.size * 1.75F && foot < -0.3F)
            continue;
        const float cover = rowCoverage(shape, p, pixel);
        const float drift = fbm(Vec2{p.x * 1.5F + n, p.y * 4 - n}, {.octaves = 4, .seed = 506});
        if (cover > 0) {
            const float shade = 1 + 0.10F * noise(p * (60 / (0.3F + t)), 507);
            result = mix(result, palettes.trees(t) * shade, cover);
        }
        // A bank of fog before each row hides its foot.
        const float bank =
            smoothstep(-0.13F - 0.05F * t, 0.05F, foot + 0.07F * drift) * (0.78F - 0.5F * t);
        result = mix(result, palettes.fog(0.3F + 0.5F * t) * (1 - 0.25F * t), saturate(bank));
    }
    return result;
}

} // namespace

Painter paintForest(const Frame& frame, base::WorkerPool&) {
    std::vector<Row> rows;
    for (int row = 0; row < rowCount; ++row)
        rows.push_back(makeRow(row, frame));
    return [palettes = Palettes{}, rows = std::move(rows), pixel = frame.pixel()](Vec2 p) {
        return forestAt(palettes, rows, p, pixel);
    };
}

} // namespace vantro::backgrounds
