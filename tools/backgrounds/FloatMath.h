#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

// Arithmetic for the painters. Only operations that IEEE 754 rounds exactly (+ - * / sqrt) are
// used: the C library's sin or pow differ between versions, and the same source must make the same
// picture everywhere.
namespace vantro::backgrounds {

constexpr float pi = 3.14159265F;

struct Vec2 {
    float x = 0;
    float y = 0;
    friend constexpr Vec2 operator+(Vec2 a, Vec2 b) { return {a.x + b.x, a.y + b.y}; }
    friend constexpr Vec2 operator-(Vec2 a, Vec2 b) { return {a.x - b.x, a.y - b.y}; }
    friend constexpr Vec2 operator*(Vec2 a, float s) { return {a.x * s, a.y * s}; }
};

/// A direction, a place (x right, y forward, z up) or linear-light red, green, blue.
struct Vec3 {
    float x = 0;
    float y = 0;
    float z = 0;
    friend constexpr Vec3 operator+(Vec3 a, Vec3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend constexpr Vec3 operator-(Vec3 a, Vec3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend constexpr Vec3 operator*(Vec3 a, Vec3 b) { return {a.x * b.x, a.y * b.y, a.z * b.z}; }
    friend constexpr Vec3 operator*(Vec3 a, float s) { return {a.x * s, a.y * s, a.z * s}; }
};

constexpr float dot(Vec2 a, Vec2 b) {
    return a.x * b.x + a.y * b.y;
}
constexpr float dot(Vec3 a, Vec3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline float length(Vec2 a) {
    return std::sqrt(dot(a, a));
}
inline Vec3 normalized(Vec3 a) {
    return a * (1 / std::sqrt(dot(a, a)));
}

constexpr float square(float x) {
    return x * x;
}
constexpr float clamp(float x, float low, float high) {
    return x < low ? low : (x > high ? high : x);
}
constexpr float saturate(float x) {
    return clamp(x, 0, 1);
}
constexpr float mix(float a, float b, float t) {
    return a + (b - a) * t;
}
constexpr Vec2 mix(Vec2 a, Vec2 b, float t) {
    return a + (b - a) * t;
}
constexpr Vec3 mix(Vec3 a, Vec3 b, float t) {
    return a + (b - a) * t;
}
/// 0 up to `low`, 1 from `high` on, smooth between; `low` may be above `high`.
constexpr float smoothstep(float low, float high, float x) {
    const float t = saturate((x - low) / (high - low));
    return t * t * (3 - 2 * t);
}
constexpr float floorOf(float x) {
    const auto whole = static_cast<float>(static_cast<std::int32_t>(x));
    return whole > x ? whole - 1 : whole;
}
constexpr float fractionOf(float x) {
    return x - floorOf(x);
}

constexpr float sine(float radians) {
    float turn = radians * (0.5F / pi);
    turn -= floorOf(turn + 0.5F);
    if (turn > 0.25F)
        turn = 0.5F - turn;
    else if (turn < -0.25F)
        turn = -0.5F - turn;
    const float x = turn * 2 * pi;
    const float s = x * x;
    return x * (1 + s * (-1 / 6.F + s * (1 / 120.F + s * (-1 / 5040.F + s / 362880.F))));
}
constexpr float cosine(float radians) {
    return sine(radians + pi / 2);
}
constexpr Vec2 rotated(Vec2 p, float radians) {
    const float c = cosine(radians);
    const float s = sine(radians);
    return {c * p.x - s * p.y, s * p.x + c * p.y};
}

constexpr float exp2Of(float x) {
    x = clamp(x, -126, 126);
    const float whole = floorOf(x + 0.5F);
    const float y = (x - whole) * 0.69314718F;
    const float fraction =
        1 + y * (1 + y * (0.5F + y * (1 / 6.F + y * (1 / 24.F + y * (1 / 120.F + y / 720)))));
    return fraction * std::bit_cast<float>((static_cast<std::int32_t>(whole) + 127) << 23);
}
constexpr float exponential(float x) {
    return exp2Of(x * 1.44269504F);
}
/// Base 2; `x` must be above 0.
constexpr float log2Of(float x) {
    const auto bits = std::bit_cast<std::int32_t>(x);
    // Splits x into 2^e * m with m around 1, where the series converges fast.
    const std::int32_t exponent = (bits - 0x3f3504f3) >> 23;
    const auto m = std::bit_cast<float>(bits - (exponent << 23));
    const float s = (m - 1) / (m + 1);
    const float t = s * s;
    return static_cast<float>(exponent) +
           2.88539008F * s * (1 + t * (1 / 3.F + t * (1 / 5.F + t / 7.F)));
}
/// 0 for bases that are not above 0.
constexpr float power(float base, float exponent) {
    return base > 0 ? exp2Of(log2Of(base) * exponent) : 0;
}
/// A bell curve of height 1 whose standard deviation is `width`.
constexpr float bell(float x, float width) {
    return exponential(-0.5F * square(x / width));
}

} // namespace vantro::backgrounds
