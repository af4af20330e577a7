#include "backgrounds/Noise.h"
#include "backgrounds/Profile.h"
#include "backgrounds/painters/Painters.h"

#include <span>

// Broad waves, one behind another, each with its own light and a soft shadow on the next.
namespace vantro::backgrounds {
namespace {

struct WavePalette {
    Gradient sky;
    Gradient crest; ///< by layer, 0 far to 1 near
    Gradient base;
    float shadow;
    float rim;
};

constexpr int layerCount = 7;

float crestAt(int layer, float x) {
    const auto n = static_cast<float>(layer);
    const float t = n / (layerCount - 1);
    const float swell = sine(x * (1.5F + 0.23F * n) + 1.9F * n * n + 0.6F);
    const float second = sine(x * (3.1F - 0.2F * n) + 2.6F * n + 1);
    const float tilt = (layer % 2 == 0 ? 1.F : -1.F) * (x - 0.89F);
    return 0.25F + 0.72F * t + 0.105F * swell + 0.034F * second + tilt * 0.10F * (1 - 0.5F * t);
}

/// The waves' crests, far to near.
std::vector<Profile> makeCrests(const Frame& frame) {
    std::vector<Profile> crests;
    for (int layer = 0; layer < layerCount; ++layer)
        crests.emplace_back(frame, [layer](float x) { return crestAt(layer, x); });
    return crests;
}

/// How far `p` lies below the crest, measured at a right angle to it.
float depthBelow(const Profile& crest, Vec2 p) {
    return (p.y - crest(p.x)) / std::sqrt(1 + square(crest.slope(p.x)));
}

Rgb waveAt(const WavePalette& palette, std::span<const Profile> crests, Vec2 p, float pixel) {
    const float drift = 0.10F * noise(p * 1.1F, 31);
    Rgb result = palette.sky(p.y + 0.12F * (p.x - 0.89F));
    for (int layer = 0; layer < layerCount; ++layer) {
        const float depth = depthBelow(crests[static_cast<std::size_t>(layer)], p);
        if (depth < -0.2F)
            continue;
        // The layer darkens what lies just above its edge, as paper lifted off the page would.
        result = result * (1 - palette.shadow * exponential(-square((depth - 0.01F) / 0.07F)));
        const float cover = saturate(depth / pixel + 0.5F);
        if (cover <= 0)
            continue;
        const float t = static_cast<float>(layer) / (layerCount - 1);
        const float across = 0.16F * sine(p.x * 1.7F + t * 5) + drift;
        const Rgb top = palette.crest(t + across);
        const Rgb body = palette.base(t + across * 0.7F);
        const Rgb rim = top * (palette.rim * exponential(-depth / 0.012F));
        const Rgb fill = mix(top, body, 1 - exponential(-depth / 0.17F)) + rim;
        result = mix(result, fill, cover);
    }
    return result;
}

Painter makeWaves(WavePalette palette, const Frame& frame) {
    return [palette = std::move(palette), crests = makeCrests(frame),
            pixel = frame.pixel()](Vec2 p) { return waveAt(palette, crests, p, pixel); };
}

} // namespace

Painter paintWavesDark(const Frame& frame, base::WorkerPool&) {
    return makeWaves(
        {.sky = {{0, 0x0a1030}, {0.3F, 0x2b1a55}, {0.6F, 0x7a2f6e}},
         .crest =
             {{0, 0xd1567e}, {0.25F, 0xa23a8c}, {0.5F, 0x5a3aa8}, {0.75F, 0x2a50b0}, {1, 0x1b6fae}},
         .base =
             {{0, 0x6a1f5e}, {0.25F, 0x431a63}, {0.5F, 0x21185c}, {0.75F, 0x0e1c4f}, {1, 0x08163a}},
         .shadow = 0.42F,
         .rim = 0.35F},
        frame);
}

Painter paintWavesLight(const Frame& frame, base::WorkerPool&) {
    return makeWaves(
        {.sky = {{0, 0xdcecff}, {0.3F, 0xfbe9e4}, {0.6F, 0xffd9b8}},
         .crest =
             {{0, 0xffe1b5}, {0.25F, 0xffc2a6}, {0.5F, 0xf9b1bf}, {0.75F, 0xc9b8f2}, {1, 0xa9cdf8}},
         .base =
             {{0, 0xffc796}, {0.25F, 0xfb9f92}, {0.5F, 0xdb97c4}, {0.75F, 0x9fa4ea}, {1, 0x86b5f0}},
         .shadow = 0.16F,
         .rim = 0.16F},
        frame);
}

} // namespace vantro::backgrounds
