#include "backgrounds/Noise.h"
#include "backgrounds/painters/Painters.h"

// Silk that lies in long folds across the picture, lit from the upper left.
namespace vantro::backgrounds {
namespace {

struct Silk {
    Gradient cloth;
    Rgb sheen;
    /// Darkest shade in the folds, as a share of the cloth's light.
    float shade;
    float sheenStrength;
};

// A part of the noise whose folds lie well in the picture.
constexpr Vec2 chosen{-8.4F, -6.6F};

float heightAt(Vec2 p) {
    const Vec2 q = rotated(p - Vec2{0.9F, 0.5F}, 0.62F);
    const float bend = noise((q + chosen) * 1.15F, 11);
    const float drift = noise(Vec2{q.x * 0.7F, q.y * 1.9F} + chosen, 12);
    const float across = q.y * 5.2F + 1.9F * bend + 0.9F * sine(q.x * 1.6F + drift * 2);
    const float broad = sine(across);
    const float fine = sine(across * 2.3F + 2.2F * drift + 1.3F);
    const float detail = sine(across * 4.1F + 3 * bend + q.x * 2.1F);
    const float swell = 0.5F + 0.5F * noise(q * 1.7F + Vec2{3, 1}, 13);
    return 0.16F * broad + 0.055F * fine * swell + 0.014F * detail * swell * swell;
}

Rgb silkAt(const Silk& silk, Vec2 p) {
    constexpr float step = 0.002F;
    const float height = heightAt(p);
    const float dx = (heightAt(p + Vec2{step, 0}) - height) / step;
    const float dy = (heightAt(p + Vec2{0, step}) - height) / step;
    const Vec3 normal = normalized({-dx, -dy, 0.85F});
    const Vec3 light = normalized({-0.45F, -0.65F, 0.62F});
    const float lit = saturate(0.5F + 0.5F * dot(normal, light));
    const Vec3 half = normalized(light + Vec3{0, 0, 1});
    const float gloss = power(saturate(dot(normal, half)), 26);
    const float place =
        0.16F + 0.36F * p.x + 0.16F * (1 - p.y) + 0.85F * height + 0.13F * noise(p * 1.3F, 14);
    const Rgb cloth = silk.cloth(place);
    return cloth * mix(silk.shade, 1.12F, lit * lit) + silk.sheen * (gloss * silk.sheenStrength);
}

Painter makeSilk(Silk silk) {
    return [silk = std::move(silk)](Vec2 p) { return silkAt(silk, p); };
}

} // namespace

Painter paintFoldsDark(const Frame&, base::WorkerPool&) {
    return makeSilk({.cloth = {{0, 0x0b1033},
                               {0.25F, 0x1c1a5e},
                               {0.45F, 0x4a2290},
                               {0.65F, 0x9c2f86},
                               {0.82F, 0xe0566a},
                               {1, 0xffa25c}},
                     .sheen = color(0xc9a2ff),
                     .shade = 0.06F,
                     .sheenStrength = 0.10F});
}

Painter paintFoldsLight(const Frame&, base::WorkerPool&) {
    return makeSilk({.cloth = {{0, 0xc3d4ff},
                               {0.25F, 0xd6d0ff},
                               {0.45F, 0xecd3fb},
                               {0.65F, 0xffd3e2},
                               {0.82F, 0xffdccb},
                               {1, 0xfff0d6}},
                     .sheen = color(0xffffff),
                     .shade = 0.52F,
                     .sheenStrength = 0.16F});
}

} // namespace vantro::backgrounds
