#include "backgrounds/Noise.h"
#include "backgrounds/painters/Painters.h"

#include <algorithm>

// A city at night, far out of focus.
namespace vantro::backgrounds {
namespace {

struct Lights {
    float cell; ///< one light a cell, in picture heights
    float radius;
    float softness; ///< of the rim, as a share of the radius
    float brightness;
    float chance;
    std::uint32_t seed;
};

constexpr Lights layers[] = {
    {0.060F, 0.022F, 0.35F, 0.30F, 0.62F, 601},
    {0.105F, 0.045F, 0.16F, 0.36F, 0.52F, 602},
    {0.190F, 0.085F, 0.14F, 0.20F, 0.40F, 603},
    {0.340F, 0.150F, 0.14F, 0.09F, 0.30F, 604},
};

/// The out-of-focus image of a point of light: a disc, brighter at its rim.
float discAt(float distance, float softness) {
    const float inside = smoothstep(1, 1 - softness, distance);
    return inside * (0.62F + 0.38F * power(distance, 5) + 0.12F * bell(distance - 0.93F, 0.04F));
}

Rgb lightsAt(const Lights& layer, const Gradient& tints, Vec2 p) {
    const Vec2 q = p * (1 / layer.cell);
    const auto baseX = static_cast<std::int32_t>(floorOf(q.x));
    const auto baseY = static_cast<std::int32_t>(floorOf(q.y));
    Rgb sum{};
    for (std::int32_t y = baseY - 1; y <= baseY + 1; ++y) {
        for (std::int32_t x = baseX - 1; x <= baseX + 1; ++x) {
            Dice dice(hashOf(x, y, layer.seed));
            const float present = dice.unit();
            const Vec2 place{(static_cast<float>(x) + dice.unit()) * layer.cell,
                             (static_cast<float>(y) + dice.unit()) * layer.cell};
            const float radius = layer.radius * dice.between(0.7F, 1.1F);
            const float tint = dice.unit();
            const float power2 = square(dice.unit());
            const float distance = length(p - place) / radius;
            // The street lies in the lower half: lights gather there.
            const float crowd = bell(place.y - 0.64F - 0.10F * sine(place.x * 2.1F), 0.20F);
            if (distance >= 1 || present > layer.chance * (0.12F + 1.25F * crowd))
                continue;
            const float strength = layer.brightness * (0.25F + 1.6F * power2);
            sum = sum + tints(tint) * (strength * discAt(distance, layer.softness));
        }
    }
    return sum;
}

} // namespace

Painter paintBokeh(const Frame&, base::WorkerPool&) {
    struct Palettes {
        Gradient night{
            {0, 0x070b1a}, {0.4F, 0x131735}, {0.66F, 0x3a2346}, {0.85F, 0x1a1430}, {1, 0x090a18}};
        Gradient tints{{0, 0xff6a3a},     {0.3F, 0xffb35a},  {0.55F, 0xffd9a0},
                       {0.72F, 0xff5f8a}, {0.86F, 0x6fa8ff}, {1, 0x5fe0d8}};
    };
    return [palettes = Palettes{}](Vec2 p) {
        Rgb result = palettes.night(p.y + 0.06F * noise(p * 1.2F, 610));
        result = result + color(0xff8a4a) * (0.09F * bell(p.y - 0.64F, 0.12F) *
                                             (1 + 0.5F * noise(p * 1.7F, 611)));
        for (const auto& layer : layers)
            result = result + lightsAt(layer, palettes.tints, p);
        return result;
    };
}

} // namespace vantro::backgrounds
