#include "backgrounds/Noise.h"
#include "backgrounds/painters/Painters.h"

#include <algorithm>

// Woven linen in soft folds.
namespace vantro::backgrounds {
namespace {

struct Thread {
    float height; ///< 0 at the side of a thread, 1 on top
    float shade;
};

/// One set of parallel threads; `x` across them, `y` along, in threads.
Thread threadAt(float x, float y, std::uint32_t seed) {
    const float wander = 0.16F * lineNoise(y * 0.07F + floorOf(x) * 37.7F, seed);
    const float place = x + wander;
    const float index = floorOf(place);
    const auto id = hashOf(static_cast<std::int32_t>(index), 5, seed);
    // Yarn is uneven: thick and thin places along every thread.
    const float slub = lineNoise(y * 0.10F + index * 73.3F, seed + 1);
    const float width = 0.92F + 0.10F * slub + 0.10F * (unitOf(id) - 0.5F);
    const float s = (place - index - 0.5F) * 2 / width;
    const float round = std::sqrt(std::max(0.F, 1 - s * s));
    const float twist = sine((s * 0.9F + y * 1.1F) * 3.3F + 6 * unitOf(id));
    const float shade = 1 + 0.10F * slub + 0.16F * (unitOf(hashOf(id)) - 0.5F) + 0.07F * twist;
    return {.height = round, .shade = shade};
}

/// The light that a plain weave throws back at `q`, measured in threads.
Rgb weaveAt(Vec2 q) {
    const Thread warpThread = threadAt(q.x, q.y, 860);
    const Thread weft = threadAt(q.y, q.x, 870);
    // Each thread dives under every second one.
    const auto parity =
        static_cast<std::int32_t>(floorOf(q.x)) + static_cast<std::int32_t>(floorOf(q.y));
    const float over = (parity & 1) == 0 ? 1.F : -1.F;
    const float warpTop = warpThread.height * 0.6F + 0.5F * over * sine(fractionOf(q.y) * pi);
    const float weftTop = weft.height * 0.6F - 0.5F * over * sine(fractionOf(q.x) * pi);
    const bool warpAbove = warpTop > weftTop;
    const float lit = 0.34F + 0.66F * smoothstep(-0.1F, 1.05F, std::max(warpTop, weftTop));
    const Rgb yarn = warpAbove ? Rgb{0.270F, 0.323F, 0.381F} : Rgb{0.205F, 0.254F, 0.309F};
    return yarn * (lit * (warpAbove ? warpThread.shade : weft.shade));
}

Rgb linenAt(Vec2 p, float pixel) {
    constexpr float threads = 165; // in a picture height
    const Vec2 sag = warp(p * 1.1F, {.octaves = 2, .gain = 0.3F, .seed = 851}) * 0.012F;
    const Vec2 q = (p + sag) * threads;
    // Threads are near the size of a pixel: two samples each way keep them from beating with it.
    const float s = pixel / 4 * threads;
    const Rgb weave = weaveAt(q + Vec2{-s, -s}) + weaveAt(q + Vec2{s, -s}) +
                      weaveAt(q + Vec2{-s, s}) + weaveAt(q + Vec2{s, s});
    const float bend = rotated(p, 0.5F).x * 3.4F + 2.2F * noise(p * 0.7F, 880);
    const float drape =
        0.98F + 0.26F * sine(bend + 0.5F * sine(bend)) + 0.14F * noise(p * 1.3F, 881);
    const float stain = 1 + 0.06F * fbm(p * 6, {.octaves = 4, .seed = 882});
    return weave * (0.25F * drape * stain);
}

} // namespace

Painter paintLinen(const Frame& frame, base::WorkerPool&) {
    return [pixel = frame.pixel()](Vec2 p) { return linenAt(p, pixel); };
}

} // namespace vantro::backgrounds
