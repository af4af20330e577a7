#include "backgrounds/Noise.h"
#include "backgrounds/Profile.h"
#include "backgrounds/painters/Painters.h"
#include "backgrounds/painters/Sky.h"

#include <memory>
#include <vector>

// The milky way over mountains at night.
namespace vantro::backgrounds {
namespace {

constexpr int rangeCount = 3;

/// The band of the milky way: x along it, y across.
Vec2 alongBand(Vec2 p) {
    return rotated(p - Vec2{1.02F, 0.42F}, 0.95F);
}

Rgb milkyWayAt(Vec2 p) {
    const Vec2 q = alongBand(p);
    const Vec2 bent = q + warp(q * 2.6F, {.octaves = 5, .gain = 0.55F, .seed = 411}) * 0.075F;
    const float core = bell(q.x + 0.16F, 0.36F);
    const float width = 0.085F + 0.06F * core;
    const float band = bell(bent.y, width);
    const float clouds =
        saturate(0.5F + 0.62F * fbm(bent * 5.5F, {.octaves = 8, .gain = 0.6F, .seed = 412}));
    // Dust lies along the middle, in a main lane with side arms that the warp frays.
    const float arms = fbm(Vec2{bent.x * 3.2F, bent.y * 9} + Vec2{3, 1},
                           {.octaves = 8, .gain = 0.6F, .seed = 413});
    const float lane = bell(bent.y - 0.014F + 0.05F * arms, 0.020F + 0.014F * core);
    const float dust =
        saturate(0.85F * lane + 0.9F * smoothstep(0.05F, 0.55F, arms) * bell(bent.y, width * 0.8F));
    const float light =
        band * (0.10F + 0.75F * clouds * clouds) * (0.40F + 1.15F * core) * (1 - 0.86F * dust);
    const float warm = saturate(core * bell(q.y, 0.10F) * 0.9F);
    const Rgb tint = mix(color(0x8ea6e6), color(0xffdcbc), warm);
    const float nebula = power(saturate(noise(q * 8, 414)), 2) * bell(q.y, 0.05F) * core;
    return tint * (light * 0.95F) + color(0xd0507a) * (nebula * 0.28F);
}

float rangeTop(int range, float x) {
    const auto n = static_cast<float>(range);
    const float outline =
        skyline(x * (1.5F + 0.5F * n) + 5 * n + 1.3F, 10, 420U + static_cast<std::uint32_t>(range));
    return 0.815F + 0.06F * n - (0.075F - 0.012F * n) * outline;
}

struct Scene {
    Canvas band; ///< the milky way's haze, without stars
    std::vector<Profile> ranges;
    Gradient night{
        {0, 0x060a1c}, {0.4F, 0x0e1834}, {0.7F, 0x24375c}, {0.85F, 0x5d5a6c}, {0.95F, 0x9c7a68}};
    Gradient range{{0, 0x2c3650}, {0.5F, 0x141b2e}, {1, 0x04070d}};
    float pixel;
};

Rgb skyAt(const Scene& scene, Vec2 p) {
    const float crowd = 0.45F + 0.9F * bell(alongBand(p).y, 0.16F);
    const float low = smoothstep(0.96F, 0.6F, p.y);
    return scene.night(p.y) + scene.band.sampled(p) * low +
           starsAt(p, 26, scene.pixel, 415) * (crowd * low);
}

Rgb nightAt(const Scene& scene, Vec2 p) {
    Rgb result = skyAt(scene, p);
    for (std::size_t i = 0; i < scene.ranges.size(); ++i) {
        const float n = static_cast<float>(i) / (rangeCount - 1);
        const float depth = p.y - scene.ranges[i](p.x);
        const float mist = 0.3F * saturate(1 - exponential(-depth * 9) * (1 - 0.8F * n)) * (1 - n);
        const Rgb body = mix(scene.range(n), color(0x4a4a5e), mist);
        result = mix(result, body, coverage(depth, scene.pixel));
    }
    return result;
}

} // namespace

Painter paintMilkyWay(const Frame& frame, base::WorkerPool& pool) {
    Canvas band({(frame.width + 1) / 2, (frame.height + 1) / 2});
    band.paint(milkyWayAt, pool);
    std::vector<Profile> ranges;
    for (int range = 0; range < rangeCount; ++range)
        ranges.emplace_back(frame, [range](float x) { return rangeTop(range, x); });
    const auto scene = std::make_shared<Scene>(
        Scene{.band = std::move(band), .ranges = std::move(ranges), .pixel = frame.pixel()});
    return [scene](Vec2 p) { return nightAt(*scene, p); };
}

} // namespace vantro::backgrounds
