#include "backgrounds/Noise.h"
#include "backgrounds/Profile.h"
#include "backgrounds/painters/Painters.h"
#include "backgrounds/painters/Sky.h"

#include <span>
#include <vector>

// Ridge behind ridge, with the morning's mist between them.
namespace vantro::backgrounds {
namespace {

constexpr int ridgeCount = 8;

struct Palettes {
    Gradient sky{{0, 0x6f9fc0}, {0.25F, 0xa9c4cf}, {0.42F, 0xf3d9bd}, {0.6F, 0xfbd3a6}};
    Gradient ridge{
        {0, 0xc9c6c6}, {0.25F, 0x9fb2bd}, {0.5F, 0x6c93a3}, {0.75F, 0x37667a}, {1, 0x0d2b3a}};
};

Rgb skyAt(const Palettes& palettes, Vec2 p) {
    const float away = length(Vec2{(p.x - 1.18F) * 0.8F, p.y - 0.40F});
    const float glow = exponential(-away * 4.2F);
    const float disc = smoothstep(0.036F, 0.032F, length(p - Vec2{1.18F, 0.325F}));
    const float veil = fbm(Vec2{p.x * 1.1F, p.y * 7}, {.octaves = 5, .seed = 201});
    return palettes.sky(p.y) * (1 + 0.05F * veil) + color(0xffb878) * (0.75F * glow) +
           color(0xffe9c4) * (0.9F * disc);
}

/// The outline of a ridge; without `detail` as smooth as the mist that follows it.
float ridgeTop(int ridge, float x, bool detail) {
    const auto n = static_cast<float>(ridge);
    const float t = n / (ridgeCount - 1);
    const float relief = skyline(x * (1.1F + 0.25F * n) + 3.7F * n, detail ? 9 : 2,
                                 210U + static_cast<std::uint32_t>(ridge));
    // Forest on the nearer ridges: spiky, and only as high as trees.
    const float trees = ridge < 4 || !detail ? 0.F
                                             : ridged(Vec2{x * (52 - 5 * n), n},
                                                      {.octaves = 3, .gain = 0.6F, .seed = 230});
    const float gap = 0.035F * (unitOf(hashOf(static_cast<std::uint32_t>(ridge) + 90U)) - 0.5F);
    return 0.41F + gap + 0.56F * t * (0.5F + 0.5F * t) - (0.06F + 0.10F * t) * relief -
           (0.004F + 0.007F * t) * trees * smoothstep(0.4F, 0.8F, t);
}

struct Ridge {
    Profile outline;
    Profile mist; ///< where the mist on it begins
};

std::vector<Ridge> makeRidges(const Frame& frame) {
    std::vector<Ridge> ridges;
    for (int ridge = 0; ridge < ridgeCount; ++ridge)
        ridges.push_back({{frame, [ridge](float x) { return ridgeTop(ridge, x, true); }},
                          {frame, [ridge](float x) { return ridgeTop(ridge, x, false); }}});
    return ridges;
}

Rgb mistAt(const Palettes& palettes, std::span<const Ridge> ridges, Vec2 p, float pixel) {
    const bool open = p.y < ridges[0].outline(p.x) + pixel;
    Rgb result = open ? skyAt(palettes, p) : Rgb{};
    const float glow = exponential(-length(Vec2{(p.x - 1.18F) * 0.7F, p.y - 0.40F}) * 2.6F);
    for (int ridge = 0; ridge < ridgeCount; ++ridge) {
        const auto n = static_cast<float>(ridge);
        const float t = n / (ridgeCount - 1);
        const Ridge& shape = ridges[static_cast<std::size_t>(ridge)];
        const float depth = p.y - shape.outline(p.x);
        const float cover = coverage(depth, pixel);
        const bool hidden = ridge + 1 < ridgeCount &&
                            p.y > ridges[static_cast<std::size_t>(ridge) + 1].outline(p.x) + pixel;
        if (cover <= 0 || hidden)
            continue;
        const Rgb body = palettes.ridge(t) + color(0xffb070) * (0.40F * glow * square(1 - t));
        // Mist gathers in the valley at the ridge's foot.
        const float drift = fbm(Vec2{p.x * 1.6F + n * 2.3F, p.y * 6}, {.octaves = 4, .seed = 240});
        const float mist =
            smoothstep(0.0F, 0.16F + 0.10F * t, p.y - shape.mist(p.x) + 0.07F * drift) *
            (0.86F - 0.45F * t * t);
        const Rgb fog = mix(palettes.ridge(t * 0.32F), palettes.sky(0.45F), 0.35F * (1 - t)) +
                        color(0xffc890) * (0.30F * glow * (1 - 0.8F * t));
        result = mix(result, mix(body, fog, mist), cover);
    }
    return result;
}

} // namespace

Painter paintMist(const Frame& frame, base::WorkerPool&) {
    return [palettes = Palettes{}, ridges = makeRidges(frame), pixel = frame.pixel()](Vec2 p) {
        return mistAt(palettes, ridges, p, pixel);
    };
}

} // namespace vantro::backgrounds
