#include "backgrounds/Palette.h"

#include "base/Fatal.h"

#include <algorithm>

namespace vantro::backgrounds {
namespace {

constexpr int tableSize = 2048;

Lab operator+(Lab a, Lab b) {
    return {a.lightness + b.lightness, a.a + b.a, a.b + b.b};
}
Lab operator*(Lab a, float s) {
    return {a.lightness * s, a.a * s, a.b * s};
}

struct LabStop {
    float place;
    Lab lab;
};

/// The slope of the curve at a stop: through both neighbors, so that no kink shows there.
Lab slopeAt(const std::vector<LabStop>& stops, std::size_t index) {
    const auto& before = stops[index > 0 ? index - 1 : 0];
    const auto& after = stops[std::min(index + 1, stops.size() - 1)];
    return (after.lab + before.lab * -1) * (1 / (after.place - before.place));
}

Lab onCurve(const std::vector<LabStop>& stops, float place) {
    std::size_t index = 0;
    while (index + 2 < stops.size() && place > stops[index + 1].place)
        ++index;
    const float span = stops[index + 1].place - stops[index].place;
    const float t = saturate((place - stops[index].place) / span);
    const float u = 1 - t;
    return stops[index].lab * (u * u * (1 + 2 * t)) + slopeAt(stops, index) * (span * t * u * u) +
           stops[index + 1].lab * (t * t * (3 - 2 * t)) +
           slopeAt(stops, index + 1) * (-span * t * t * u);
}

float shoulder(float x) {
    constexpr float start = 0.55F;
    return x < start ? x : start + (1 - start) * (1 - exponential((start - x) / (1 - start)));
}

} // namespace

float luminance(Rgb rgb) {
    return dot(rgb, Rgb{0.2126F, 0.7152F, 0.0722F});
}

float encoded(float linear) {
    linear = saturate(linear);
    return linear <= 0.0031308F ? linear * 12.92F : 1.055F * power(linear, 1 / 2.4F) - 0.055F;
}

Lab toLab(Rgb c) {
    constexpr float third = 1 / 3.F;
    const float l = power(dot(c, {0.4122214708F, 0.5363325363F, 0.0514459929F}), third);
    const float m = power(dot(c, {0.2119034982F, 0.6806995451F, 0.1073969566F}), third);
    const float s = power(dot(c, {0.0883024619F, 0.2817188376F, 0.6299787005F}), third);
    return {0.2104542553F * l + 0.7936177850F * m - 0.0040720468F * s,
            1.9779984951F * l - 2.4285922050F * m + 0.4505937099F * s,
            0.0259040371F * l + 0.7827717662F * m - 0.8086757660F * s};
}

Rgb toRgb(Lab lab) {
    const float l = lab.lightness + 0.3963377774F * lab.a + 0.2158037573F * lab.b;
    const float m = lab.lightness - 0.1055613458F * lab.a - 0.0638541728F * lab.b;
    const float s = lab.lightness - 0.0894841775F * lab.a - 1.2914855480F * lab.b;
    const Vec3 cubes{l * l * l, m * m * m, s * s * s};
    return {std::max(0.F, dot(cubes, {4.0767416621F, -3.3077115913F, 0.2309699292F})),
            std::max(0.F, dot(cubes, {-1.2684380046F, 2.6097574011F, -0.3413193965F})),
            std::max(0.F, dot(cubes, {-0.0041960863F, -0.7034186147F, 1.7076147010F}))};
}

Gradient::Gradient(std::initializer_list<Stop> stops) {
    base::require(stops.size() >= 2, "a gradient needs two colors");
    std::vector<LabStop> curve;
    curve.reserve(stops.size());
    for (const auto& stop : stops)
        curve.push_back({stop.place, toLab(decodedHex(stop.hex))});
    m_first = curve.front().place;
    const float range = curve.back().place - m_first;
    m_scale = (tableSize - 1) / range;
    m_table.reserve(tableSize);
    for (int i = 0; i < tableSize; ++i)
        m_table.push_back(
            toRgb(onCurve(curve, m_first + range * static_cast<float>(i) / (tableSize - 1))));
}

Rgb Gradient::operator()(float place) const {
    const float position = clamp((place - m_first) * m_scale, 0, tableSize - 1.001F);
    const auto index = static_cast<std::size_t>(position);
    return mix(m_table[index], m_table[index + 1], position - static_cast<float>(index));
}

Rgb developed(Rgb light) {
    return {shoulder(light.x), shoulder(light.y), shoulder(light.z)};
}

} // namespace vantro::backgrounds
