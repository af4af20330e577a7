#pragma once

namespace vantro::media {

__extension__ typedef __int128 WideInteger; // NOLINT(modernize-use-using): needs __extension__

/// An exact fraction in lowest terms, wide enough for products of times. Overflow is fatal.
class Fraction {
  public:
    Fraction(WideInteger numerator, WideInteger denominator);

    WideInteger numerator() const { return m_numerator; }
    WideInteger denominator() const { return m_denominator; }

    /// The nearest whole number, halves away from zero.
    WideInteger rounded() const;
    /// The smallest whole number that is not below.
    WideInteger ceiling() const;

    friend Fraction operator+(const Fraction& a, const Fraction& b);
    friend Fraction operator-(const Fraction& a, const Fraction& b);
    friend Fraction operator*(const Fraction& a, const Fraction& b);
    friend Fraction operator/(const Fraction& a, const Fraction& b);

  private:
    WideInteger m_numerator;
    WideInteger m_denominator; // positive
};

} // namespace vantro::media
