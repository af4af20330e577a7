#pragma once

#include "backgrounds/FloatMath.h"

#include <cstdint>
#include <initializer_list>
#include <vector>

namespace vantro::backgrounds {

/// Linear-light red, green, blue; 1 is the brightest that a screen shows.
using Rgb = Vec3;

/// The light of an sRGB code value.
constexpr float decoded(std::uint32_t byte) {
    const float value = static_cast<float>(byte) / 255;
    return value <= 0.04045F ? value / 12.92F : power((value + 0.055F) / 1.055F, 2.4F);
}
/// The color that `0xRRGGBB` names in sRGB.
constexpr Rgb decodedHex(std::uint32_t hex) {
    return {decoded(hex >> 16 & 255U), decoded(hex >> 8 & 255U), decoded(hex & 255U)};
}
/// The same while compiling: painters name colors for every pixel.
consteval Rgb color(std::uint32_t hex) {
    return decodedHex(hex);
}
float luminance(Rgb rgb);
/// The sRGB code value, 0 to 1, of a linear component.
float encoded(float linear);

/// Lightness and two color axes in OKLab, where equal steps look equal.
struct Lab {
    float lightness = 0;
    float a = 0;
    float b = 0;
};
Lab toLab(Rgb rgb);
Rgb toRgb(Lab lab);

/// A smooth curve through colors, looked up in a table; places beyond its ends take the end's
/// color.
class Gradient {
  public:
    struct Stop {
        float place;
        std::uint32_t hex;
    };
    /// `stops` in ascending order, at least two.
    Gradient(std::initializer_list<Stop> stops);

    Rgb operator()(float place) const;

  private:
    std::vector<Rgb> m_table;
    float m_first;
    float m_scale;
};

/// Film's response: linear in the shadows, a soft shoulder for light beyond what a screen shows.
Rgb developed(Rgb light);

} // namespace vantro::backgrounds
