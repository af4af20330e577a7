#include "resources/backgrounds/Noise.h"
#include "resources/backgrounds/painters/Painters.h"
#include "resources/backgrounds/painters/Sky.h"

#include <algorithm>

// A paper wall in window light, and woven linen.
namespace vantro::backgrounds {
namespace {

/// Felted fibres: lumps of many sizes, plus single long hairs.
float paperHeight(Vec2 p, float pixel) {
    const float lumps = fbm(p * 28, resolved({.octaves = 6, .gain = 0.62F, .seed = 801}, pixel * 28));
    const Vec2 bent = p + warp(p * 9, {.octaves = 2, .seed = 802}) * 0.02F;
    const float hairs = ridged(Vec2{bent.x * 30, bent.y * 60}, {.octaves = 2, .gain = 0.6F, .seed = 803}) +
                        ridged(Vec2{bent.x * 64, bent.y * 26} + Vec2{5, 7}, {.octaves = 2, .gain = 0.6F, .seed = 804});
    return 0.0022F * lumps + 0.0010F * hairs;
}

/// The shadow of one leaf: an almond about its midrib, with a blurred outline.
float leafAt(Vec2 p, Vec2 stem, float angle, float size, float blur) {
    const Vec2 q = rotated(p - stem, -angle) * (1 / size);
    if (q.x < -0.3F || q.x > 1.3F)
        return 0;
    const float along = saturate(q.x);
    const float halfWidth = 0.36F * std::sqrt(along) * (1 - along) * 1.7F;
    const float bend = 0.10F * along * along;
    const float past = std::max({0.F, q.x - 1, -q.x});
    return smoothstep(blur, -blur, (std::abs(q.y - bend) - halfWidth + past) * size);
}

float branchesAt(Vec2 p) {
    float light = 1;
    struct Branch {
        Vec2 root;
        float angle;
        float length;
        float size;
        float blur;
    };
    constexpr Branch branches[] = {{{1.95F, -0.08F}, 2.62F, 1.15F, 0.20F, 0.016F},
                                   {{1.30F, -0.14F}, 2.2F, 0.75F, 0.17F, 0.024F},
                                   {{1.98F, 0.52F}, 2.86F, 0.72F, 0.18F, 0.020F}};
    std::uint32_t seed = 820;
    for (const auto& branch : branches) {
        Dice dice(seed++);
        for (int leaf = 0; leaf < 13; ++leaf) {
            const float t = (static_cast<float>(leaf) + 0.6F) / 13;
            const float turn = branch.angle + 0.35F * t;
            const Vec2 stem = branch.root + Vec2{cosine(turn), sine(turn)} * (branch.length * t);
            const float side = leaf % 2 == 0 ? 1.F : -1.F;
            const float angle = turn + side * dice.between(0.5F, 0.95F);
            const float size = branch.size * dice.between(0.7F, 1.15F) * (1 - 0.45F * t);
            light *= 1 - 0.72F * leafAt(p, stem, angle, size, branch.blur);
        }
    }
    return light;
}

/// Light from a window: panes with soft bars between, slanted across the wall.
float windowAt(Vec2 p) {
    const Vec2 q = rotated(p - Vec2{0.85F, 0.5F}, 0.32F);
    const Vec2 slanted{q.x + 0.35F * q.y, q.y};
    constexpr float blur = 0.022F;
    const auto opening = [&](float x, float low, float high) {
        return smoothstep(low - blur, low + blur, x) * smoothstep(high + blur, high - blur, x);
    };
    const float across = opening(slanted.x, -0.72F, -0.06F) + opening(slanted.x, 0.00F, 0.66F);
    const float down = opening(slanted.y, -0.60F, -0.03F) + opening(slanted.y, 0.03F, 0.60F);
    return saturate(across) * saturate(down);
}

Rgb paperAt(Vec2 p, float pixel) {
    const float step = std::max(pixel, 0.0006F);
    const float here = paperHeight(p, pixel);
    const float right = paperHeight(p + Vec2{step, 0}, pixel);
    const float below = paperHeight(p + Vec2{0, step}, pixel);
    const Vec3 normal = normalized({(here - right) / step, (here - below) / step, 1});
    const float relief = dot(normal, normalized({0.55F, -0.55F, 0.65F})) / 0.65F;
    const float sun = windowAt(p) * branchesAt(p);
    const float room = 0.80F + 0.10F * (p.x - 0.9F) - 0.14F * (p.y - 0.5F);
    const Rgb light = colour(0xb9b6c4) * (room * (0.75F + 0.25F * relief)) + colour(0xffe2bd) * (0.62F * sun * relief);
    return colour(0xf3ebe0) * light;
}

struct Thread {
    float height; ///< 0 at the side of a thread, 1 on top
    float shade;
};

/// One set of parallel threads; `x` across them, `y` along, in threads.
Thread threadAt(float x, float y, std::uint32_t seed) {
    const float wander = 0.16F * noise(Vec2{floorOf(x) * 3.7F, y * 0.07F}, seed);
    const float place = x + wander;
    const float index = floorOf(place);
    const auto id = hashOf(static_cast<std::int32_t>(index), 5, seed);
    // Yarn is uneven: thick and thin places along every thread.
    const float slub = noise(Vec2{index * 7.3F, y * 0.10F}, seed + 1);
    const float width = 0.92F + 0.10F * slub + 0.10F * (unitOf(id) - 0.5F);
    const float s = (place - index - 0.5F) * 2 / width;
    const float round = std::sqrt(std::max(0.F, 1 - s * s));
    const float twist = sine((s * 0.9F + y * 1.1F) * 3.3F + 6 * unitOf(id));
    const float shade = 1 + 0.10F * slub + 0.16F * (unitOf(hashOf(id)) - 0.5F) + 0.07F * twist;
    return {.height = round, .shade = shade};
}

Rgb linenAt(Vec2 p) {
    constexpr float threads = 165; // in a picture height
    const Vec2 sag = warp(p * 1.1F, {.octaves = 2, .gain = 0.3F, .seed = 851}) * 0.012F;
    const Vec2 q = (p + sag) * threads;
    const Thread warpThread = threadAt(q.x, q.y, 860);
    const Thread weft = threadAt(q.y, q.x, 870);
    // Plain weave: each thread dives under every second one.
    const auto parity = static_cast<std::int32_t>(floorOf(q.x)) + static_cast<std::int32_t>(floorOf(q.y));
    const float over = (parity & 1) == 0 ? 1.F : -1.F;
    const float wave = sine((fractionOf(q.y)) * pi) * over;
    const float wave2 = sine((fractionOf(q.x)) * pi) * -over;
    const float warpTop = warpThread.height * 0.6F + 0.5F * wave;
    const float weftTop = weft.height * 0.6F + 0.5F * wave2;
    const bool warpAbove = warpTop > weftTop;
    const float top = std::max(warpTop, weftTop);
    const Thread& thread = warpAbove ? warpThread : weft;
    const float lit = 0.34F + 0.66F * smoothstep(-0.1F, 1.05F, top);
    const Rgb yarn = warpAbove ? colour(0x8e9aa6) : colour(0x7d8a97);
    const Vec2 fold = rotated(p, 0.5F);
    const float bend = fold.x * 3.4F + 2.2F * noise(p * 0.7F, 880);
    const float drape = 0.98F + 0.26F * sine(bend + 0.5F * sine(bend)) + 0.14F * noise(p * 1.3F, 881);
    const float stain = 1 + 0.06F * fbm(p * 6, {.octaves = 4, .seed = 882});
    return yarn * (lit * thread.shade * drape * stain);
}

} // namespace

Painter paintPaper(const Frame& frame, WorkerPool&) {
    return [pixel = frame.pixel()](Vec2 p) { return paperAt(p, pixel); };
}

Painter paintLinen(const Frame& frame, WorkerPool&) {
    // Threads are near the size of a pixel: two samples each way keep them from beating with it.
    return [step = frame.pixel() / 4](Vec2 p) {
        return (linenAt(p + Vec2{-step, -step}) + linenAt(p + Vec2{step, -step}) +
                linenAt(p + Vec2{-step, step}) + linenAt(p + Vec2{step, step})) *
               0.25F;
    };
}

} // namespace vantro::backgrounds
