#include "backgrounds/Noise.h"
#include "backgrounds/painters/Painters.h"

#include <algorithm>
#include <memory>
#include <vector>

// A paper wall in the light of a window, with a plant before it.
namespace vantro::backgrounds {
namespace {

/// Felted fibres: lumps of many sizes, plus single long hairs.
float paperHeight(Vec2 p, float pixel) {
    const float lumps =
        fbm(p * 28, resolved({.octaves = 6, .gain = 0.62F, .seed = 801}, pixel * 28));
    const Vec2 bent = p + warp(p * 9, {.octaves = 2, .seed = 802}) * 0.02F;
    const float hairs =
        ridged(Vec2{bent.x * 30, bent.y * 60}, {.octaves = 2, .gain = 0.6F, .seed = 803}) +
        ridged(Vec2{bent.x * 64, bent.y * 26} + Vec2{5, 7},
               {.octaves = 2, .gain = 0.6F, .seed = 804});
    return 0.0022F * lumps + 0.0010F * hairs;
}

struct Leaf {
    Vec2 stem;
    Vec2 along; ///< unit vector towards the tip
    float size;
    float blur;
};

/// How much of the light one leaf takes: an almond about its midrib, with a blurred outline.
float shadowOf(const Leaf& leaf, Vec2 p) {
    const Vec2 away = (p - leaf.stem) * (1 / leaf.size);
    const Vec2 q{dot(away, leaf.along), leaf.along.x * away.y - leaf.along.y * away.x};
    if (q.x < -0.3F || q.x > 1.3F || std::abs(q.y) > 0.6F)
        return 0;
    const float along = saturate(q.x);
    const float halfWidth = 0.61F * std::sqrt(along) * (1 - along);
    const float past = std::max({0.F, q.x - 1, -q.x});
    const float outside = std::abs(q.y - 0.10F * along * along) - halfWidth + past;
    return smoothstep(leaf.blur, -leaf.blur, outside * leaf.size);
}

struct Branch {
    Vec2 root;
    float angle;
    float length;
    float leafSize;
    float blur;
};

constexpr Branch branches[] = {{{1.95F, -0.08F}, 2.62F, 1.15F, 0.20F, 0.016F},
                               {{1.30F, -0.14F}, 2.2F, 0.75F, 0.17F, 0.024F},
                               {{1.98F, 0.52F}, 2.86F, 0.72F, 0.18F, 0.020F}};

std::vector<Leaf> makeLeaves() {
    constexpr int leavesPerBranch = 13;
    std::vector<Leaf> leaves;
    std::uint32_t seed = 820;
    for (const auto& branch : branches) {
        Dice dice(seed++);
        for (int leaf = 0; leaf < leavesPerBranch; ++leaf) {
            const float t = (static_cast<float>(leaf) + 0.6F) / leavesPerBranch;
            const float turn = branch.angle + 0.35F * t;
            const Vec2 stem = branch.root + Vec2{cosine(turn), sine(turn)} * (branch.length * t);
            const float side = leaf % 2 == 0 ? 1.F : -1.F;
            const float angle = turn + side * dice.between(0.5F, 0.95F);
            const float size = branch.leafSize * dice.between(0.7F, 1.15F) * (1 - 0.45F * t);
            leaves.push_back({stem, {cosine(angle), sine(angle)}, size, branch.blur});
        }
    }
    return leaves;
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

/// Sunlight on the wall as a gray picture: soft everywhere, so coarse pixels hold it.
Canvas makeSunlight(const Frame& frame, base::WorkerPool& pool) {
    Canvas sunlight({(frame.width + 2) / 3, (frame.height + 2) / 3});
    sunlight.paint(
        [leaves = makeLeaves()](Vec2 p) {
            float light = windowAt(p);
            for (const auto& leaf : leaves)
                light *= 1 - 0.72F * shadowOf(leaf, p);
            return Rgb{light, light, light};
        },
        pool);
    return sunlight;
}

Rgb paperAt(const Canvas& sunlight, Vec2 p, float pixel) {
    // Slope towards the light, which falls from the upper right.
    const float step = std::max(pixel * 1.2F, 0.0007F);
    const Vec2 towards{0.7071F * step, -0.7071F * step};
    const float slope = (paperHeight(p, pixel) - paperHeight(p + towards, pixel)) / step;
    const float relief = (1 + 1.2F * slope) / std::sqrt(1 + slope * slope);
    const float room = 0.80F + 0.10F * (p.x - 0.9F) - 0.14F * (p.y - 0.5F);
    const Rgb light = color(0xb9b6c4) * (room * (0.75F + 0.25F * relief)) +
                      color(0xffe2bd) * (0.62F * sunlight.sampled(p).x * relief);
    return color(0xf3ebe0) * light;
}

} // namespace

Painter paintPaper(const Frame& frame, base::WorkerPool& pool) {
    const auto sunlight = std::make_shared<Canvas>(makeSunlight(frame, pool));
    return [sunlight, pixel = frame.pixel()](Vec2 p) { return paperAt(*sunlight, p, pixel); };
}

} // namespace vantro::backgrounds
