#include "media/values/Fraction.h"

#include "base/Fatal.h"

namespace vantro::media {
namespace {

WideInteger product(WideInteger a, WideInteger b) {
    WideInteger result = 0;
    if (__builtin_mul_overflow(a, b, &result))
        base::fatal("time arithmetic out of range");
    return result;
}

WideInteger sum(WideInteger a, WideInteger b) {
    WideInteger result = 0;
    if (__builtin_add_overflow(a, b, &result))
        base::fatal("time arithmetic out of range");
    return result;
}

WideInteger greatestCommonDivisor(WideInteger a, WideInteger b) {
    if (a < 0)
        a = -a;
    while (b != 0) {
        const WideInteger rest = a % b;
        a = b;
        b = rest;
    }
    return a;
}

} // namespace

Fraction::Fraction(WideInteger numerator, WideInteger denominator) {
    base::require(denominator != 0, "division of a time by zero");
    const WideInteger sign = denominator < 0 ? -1 : 1;
    const WideInteger divisor = greatestCommonDivisor(numerator, denominator * sign);
    m_numerator = numerator / divisor * sign;
    m_denominator = denominator / divisor * sign;
}

WideInteger Fraction::rounded() const {
    const WideInteger half = m_denominator / 2;
    // |n| + d/2 rounded down; with an odd denominator there is no exact half.
    const WideInteger magnitude = m_numerator < 0 ? -m_numerator : m_numerator;
    const WideInteger nearest = sum(magnitude, half) / m_denominator;
    return m_numerator < 0 ? -nearest : nearest;
}

WideInteger Fraction::ceiling() const {
    const WideInteger truncated = m_numerator / m_denominator;
    return truncated + (m_numerator > 0 && m_numerator % m_denominator != 0 ? 1 : 0);
}

Fraction operator+(const Fraction& a, const Fraction& b) {
    return {sum(product(a.m_numerator, b.m_denominator), product(b.m_numerator, a.m_denominator)),
            product(a.m_denominator, b.m_denominator)};
}

Fraction operator-(const Fraction& a, const Fraction& b) {
    return a + Fraction(-b.m_numerator, b.m_denominator);
}

Fraction operator*(const Fraction& a, const Fraction& b) {
    return {product(a.m_numerator, b.m_numerator), product(a.m_denominator, b.m_denominator)};
}

Fraction operator/(const Fraction& a, const Fraction& b) {
    return a * Fraction(b.m_denominator, b.m_numerator);
}

} // namespace vantro::media
