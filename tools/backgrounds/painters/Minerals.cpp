#include "backgrounds/Noise.h"
#include "backgrounds/painters/Painters.h"

#include <algorithm>

// Clear lake ice with its cracks, and polished stone.
namespace vantro::backgrounds {
namespace {

struct Crack {
    float gap;      ///< distance from the line where two cells meet
    float strength; ///< cracks open and close along their way
};

Crack crackNear(Vec2 p, float scale, std::uint32_t seed) {
    const Vec2 q = p * scale;
    const Vec2 bent = q + warp(q * 0.7F, {.octaves = 4, .gain = 0.45F, .seed = seed}) * 0.34F;
    const Cells cell = cells(bent, seed + 7);
    return {.gap = (cell.second - cell.nearest) / scale,
            .strength = 0.35F + 0.65F * smoothstep(-0.3F, 0.5F, noise(q * 1.7F, seed + 9))};
}

/// A line that glows through ice around it.
float crackAt(Vec2 p, float scale, float width, std::uint32_t seed) {
    const Crack crack = crackNear(p, scale, seed);
    return exponential(-crack.gap / width) * crack.strength;
}

/// A filled vein: sharp edges, and thinner where it is weak.
float veinAt(const Crack& crack, float width) {
    return smoothstep(1.1F, 0.4F, crack.gap / (width * square(crack.strength))) * crack.strength;
}

/// Flat discs of gas that froze in, stacked below each other.
float bubblesAt(Vec2 p) {
    float sum = 0;
    for (int layer = 0; layer < 3; ++layer) {
        const float scale = 22 - 5 * static_cast<float>(layer);
        const Vec2 q = (p + Vec2{0.004F, 0.009F} * static_cast<float>(layer)) * scale;
        const Cells cell = cells(q, 701, 0.7F);
        const float radius = 0.05F + 0.26F * square(unitOf(hashOf(cell.id + 3)));
        const float cluster = smoothstep(0.18F, 0.6F, noise(p * 1.9F + Vec2{1, 2}, 702));
        const float rim = smoothstep(radius, radius * 0.9F, cell.nearest) *
                          (0.35F + 0.65F * smoothstep(radius * 0.5F, radius, cell.nearest));
        sum += rim * cluster * (0.5F - 0.14F * static_cast<float>(layer));
    }
    return sum;
}

Rgb iceAt(const Gradient& depths, Vec2 p) {
    const Vec2 flow = warp(p * 1.3F, {.octaves = 4, .gain = 0.5F, .seed = 711});
    const float murk = fbm(p * 1.4F + flow * 0.5F, {.octaves = 8, .gain = 0.55F, .seed = 712});
    const float light = 0.45F + 0.42F * murk + 0.20F * (p.x - 0.9F) - 0.22F * (p.y - 0.5F);
    Rgb result = depths(light);
    const Rgb frost = color(0xe4f6fa);
    const float cloud = smoothstep(
        0.15F, 0.75F, fbm(p * 2.1F - flow * 0.6F, {.octaves = 8, .gain = 0.6F, .seed = 713}));
    result = mix(result, color(0x9fd3de), 0.30F * cloud);
    // A fracture slopes down into the ice: behind the bright line its face shows, wider and faint.
    for (int depth = 1; depth <= 2; ++depth) {
        const auto n = static_cast<float>(depth);
        const float face = crackAt(p + Vec2{0.008F, 0.013F} * n, 1.5F, 0.005F + 0.005F * n, 720);
        result = mix(result, color(0xa6dbe6), (0.24F - 0.05F * n) * face);
    }
    const float fine =
        crackAt(p, 4.6F, 0.0011F, 730) * smoothstep(-0.1F, 0.5F, noise(p * 2.3F, 731));
    const Crack open = crackNear(p, 1.5F, 720);
    const float main =
        saturate(veinAt(open, 0.0022F) + 0.45F * exponential(-open.gap / 0.004F) * open.strength);
    result = mix(result, frost, saturate(0.85F * main + 0.5F * fine));
    result = mix(result, frost, saturate(0.5F * bubblesAt(p)));
    const float scratch = ridged(rotated(p, 0.4F) * 3, {.octaves = 8, .gain = 0.7F, .seed = 740});
    return result * (0.92F + 0.18F * scratch);
}

Rgb stoneAt(const Gradient& body, Vec2 p) {
    const Vec2 q = rotated(p, -0.5F);
    const Vec2 stretched{q.x * 0.7F, q.y * 1.6F};
    const Vec2 flow = warp(stretched * 1.1F, {.octaves = 4, .gain = 0.5F, .seed = 751});
    const float cloud =
        fbm(stretched * 1.5F + flow * 1.1F, {.octaves = 8, .gain = 0.62F, .seed = 752});
    Rgb result = body(0.46F + 0.62F * cloud + 0.10F * (p.x - 0.9F));
    const Vec2 bent = stretched + flow * 0.16F;
    const Crack main = crackNear(bent, 1.15F, 760);
    const float vein = veinAt(main, 0.0085F);
    const float halo = exponential(-main.gap / 0.045F) * main.strength;
    const float hair = veinAt(crackNear(bent, 3.1F, 770), 0.0036F) *
                       smoothstep(-0.2F, 0.45F, noise(stretched * 1.9F, 771));
    const float mineral =
        0.65F + 0.5F * fbm(stretched * 9, {.octaves = 4, .gain = 0.6F, .seed = 772});
    result = mix(result, color(0x6f827d), 0.22F * halo);
    result = mix(result, color(0xcfd2c8), saturate(0.80F * vein * mineral + 0.40F * hair));
    const float gold = vein * smoothstep(0.05F, 0.4F, noise(stretched * 1.3F, 780));
    result = mix(result, color(0xb98b4e), saturate(0.8F * gold * mineral));
    const float grain = fbm(p * 160, {.octaves = 3, .gain = 0.7F, .seed = 790});
    // The polish mirrors a broad soft light.
    const float gloss = bell(rotated(p - Vec2{0.55F, 0.2F}, 0.5F).y, 0.30F);
    return result * (1 + 0.08F * grain) + color(0xcfe0e6) * (0.03F * gloss);
}

} // namespace

Painter paintIce(const Frame&, base::WorkerPool&) {
    return [depths = Gradient{{0, 0x031a2b},
                              {0.25F, 0x063a52},
                              {0.5F, 0x0f6480},
                              {0.75F, 0x2f97ab},
                              {1, 0x86d3d8}}](Vec2 p) { return iceAt(depths, p); };
}

Painter paintStone(const Frame&, base::WorkerPool&) {
    return [body = Gradient{{0, 0x0a1212},
                            {0.3F, 0x142221},
                            {0.55F, 0x22393a},
                            {0.8F, 0x3a5552},
                            {1, 0x5f7a74}}](Vec2 p) { return stoneAt(body, p); };
}

} // namespace vantro::backgrounds
