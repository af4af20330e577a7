#include "media/av/StreamClock.h"

#include "media/values/Fraction.h"

#include <algorithm>

namespace vantro::media::av {
namespace {

// Sums with boundary times stay exact up to here: the common timescale fits 32 bits.
constexpr std::int32_t finestTimescale = 1'000'000;
constexpr std::int64_t farthestSeconds = 1'000'000'000;

} // namespace

MediaTime StreamClock::time(std::int64_t ticks) const {
    std::int64_t sinceZero = 0;
    if (__builtin_sub_overflow(ticks, m_zero, &sinceZero))
        sinceZero = ticks;
    return span(sinceZero);
}

MediaTime StreamClock::span(std::int64_t ticks) const {
    const WideInteger scaled = WideInteger{ticks} * m_timeBase.num;
    const WideInteger limit = WideInteger{farthestSeconds} * m_timeBase.den;
    const WideInteger value = std::clamp(scaled, -limit, limit);
    const MediaTime exact{static_cast<std::int64_t>(value), m_timeBase.den};
    return exact.timescale <= finestTimescale ? exact : exact.rescaled(finestTimescale);
}

std::int64_t StreamClock::ticksAtOrBefore(MediaTime t) const {
    const Fraction ticks = Fraction(t) * Fraction(m_timeBase.den, m_timeBase.num);
    const WideInteger floor = -Fraction(-ticks.numerator(), ticks.denominator()).ceiling();
    return static_cast<std::int64_t>(floor) + m_zero;
}

} // namespace vantro::media::av
