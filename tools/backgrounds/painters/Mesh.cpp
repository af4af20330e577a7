#include "backgrounds/Noise.h"
#include "backgrounds/painters/Painters.h"

// Soft clouds of color that flow into each other.
namespace vantro::backgrounds {
namespace {

struct Spot {
    Vec2 place;
    float size;
    std::uint32_t hex;
};

using Spots = std::vector<std::pair<Spot, Lab>>;

Spots makeSpots(std::initializer_list<Spot> list) {
    Spots spots;
    for (const auto& spot : list)
        spots.emplace_back(spot, toLab(decodedHex(spot.hex)));
    return spots;
}

Rgb meshAt(const Spots& spots, Vec2 p) {
    const Vec2 flow = warp(p * 0.75F, {.octaves = 2, .gain = 0.35F, .seed = 21});
    const Vec2 q = p + flow * 0.62F;
    const Vec2 r = q + warp(q * 1.25F, {.octaves = 2, .gain = 0.3F, .seed = 22}) * 0.30F;
    Lab sum{};
    float total = 1e-6F;
    for (const auto& [spot, lab] : spots) {
        const Vec2 away = r - spot.place;
        // Between a bell, which leaves flat plateaus, and an inverse square, which leaves points.
        const float weight = power(1 + dot(away, away) / square(spot.size), -3.2F);
        sum = {sum.lightness + lab.lightness * weight, sum.a + lab.a * weight,
               sum.b + lab.b * weight};
        total += weight;
    }
    const float share = 1 / total;
    const float light = 1 + 0.05F * noise(r * 2.3F, 23);
    return toRgb({sum.lightness * share * light, sum.a * share, sum.b * share});
}

Painter makeMesh(Spots spots) {
    return [spots = std::move(spots)](Vec2 p) { return meshAt(spots, p); };
}

} // namespace

Painter paintMeshDark(const Frame&, base::WorkerPool&) {
    return makeMesh(makeSpots({{{0.10F, 0.05F}, 0.42F, 0x04101c},
                               {{0.55F, 0.20F}, 0.36F, 0x0a5a72},
                               {{1.05F, 0.02F}, 0.40F, 0x0b1d52},
                               {{1.65F, 0.25F}, 0.42F, 0x56209a},
                               {{1.25F, 0.62F}, 0.34F, 0x2168b0},
                               {{0.20F, 0.72F}, 0.44F, 0x082a52},
                               {{0.75F, 0.75F}, 0.30F, 0x1fc2a0},
                               {{0.70F, 1.05F}, 0.34F, 0x06323f},
                               {{1.70F, 0.95F}, 0.44F, 0x14082e}}));
}

Painter paintMeshLight(const Frame&, base::WorkerPool&) {
    return makeMesh(makeSpots({{{0.10F, 0.05F}, 0.42F, 0xfdf3ff},
                               {{0.55F, 0.20F}, 0.36F, 0x9fdcf2},
                               {{1.05F, 0.02F}, 0.40F, 0xe3ecff},
                               {{1.65F, 0.25F}, 0.42F, 0xc8a8ff},
                               {{1.25F, 0.62F}, 0.34F, 0xffb99c},
                               {{0.20F, 0.72F}, 0.44F, 0xb6d4ff},
                               {{0.75F, 0.75F}, 0.30F, 0x86e6cb},
                               {{0.70F, 1.05F}, 0.34F, 0xe9fff3},
                               {{1.70F, 0.95F}, 0.44F, 0xffdbe8}}));
}

} // namespace vantro::backgrounds
