#include "media/values/MediaTime.h"

#include "base/Fatal.h"

#include <cmath>
#include <limits>

namespace vantro::media {
namespace {

std::int64_t narrowed(WideInteger value) {
    base::require(value >= std::numeric_limits<std::int64_t>::min() &&
                      value <= std::numeric_limits<std::int64_t>::max(),
                  "time out of range");
    return static_cast<std::int64_t>(value);
}

/// The exact sum, in the common timescale where 32 bits hold it, so that sums of boundary times
/// keep their timescale.
MediaTime sumOf(MediaTime a, MediaTime b) {
    if (a.timescale == b.timescale)
        return {narrowed(WideInteger{a.value} + b.value), a.timescale};
    const Fraction exact = Fraction(a) + Fraction(b);
    base::require(exact.denominator() <= std::numeric_limits<std::int32_t>::max(),
                  "sum of times needs too fine a timescale");
    const std::int32_t coarser = std::min(a.timescale, b.timescale);
    const std::int32_t finer = std::max(a.timescale, b.timescale);
    const WideInteger scale = finer % coarser == 0 ? finer : exact.denominator();
    return {narrowed(exact.numerator() * (scale / exact.denominator())),
            static_cast<std::int32_t>(scale)};
}

// Divisible by the usual timescales; its tick, 1.4 ns, is far below any frame's duration.
constexpr std::int32_t finest = 720'000'000;

} // namespace

MediaTime MediaTime::fromSeconds(double seconds, std::int32_t timescale) {
    return {base::truncatedToInteger(std::round(seconds * timescale)), timescale};
}

MediaTime MediaTime::nearestTo(const Fraction& seconds) {
    if (seconds.denominator() <= std::numeric_limits<std::int32_t>::max())
        return {narrowed(seconds.numerator()), static_cast<std::int32_t>(seconds.denominator())};
    return {narrowed((seconds * Fraction(finest, 1)).rounded()), finest};
}

/// Along the convergents of the number's continued fraction: every fraction is one of those of its
/// double, unless its denominator is in the millions.
MediaTime MediaTime::simplestOf(double seconds) {
    const MediaTime nearest = fromSeconds(seconds, finest);
    MediaTime before{1, 0}; // no time yet, only the rule's start
    MediaTime found{base::truncatedToInteger(std::floor(seconds)), 1};
    double rest = seconds - std::floor(seconds);
    while (found.seconds() != seconds && rest > 0) {
        const double inverse = 1 / rest;
        const double whole = std::floor(inverse);
        rest = inverse - whole;
        const double timescale = whole * found.timescale + before.timescale;
        if (!(timescale <= finest))
            return nearest;
        const auto factor = static_cast<std::int64_t>(whole);
        const MediaTime next{base::checkedMultiply(factor, found.value) + before.value,
                             static_cast<std::int32_t>(timescale)};
        before = found;
        found = next;
    }
    return found;
}

MediaTime MediaTime::rescaled(std::int32_t newTimescale) const {
    return {narrowed((Fraction(*this) * Fraction(newTimescale, 1)).rounded()), newTimescale};
}

MediaTime operator+(MediaTime a, MediaTime b) {
    return sumOf(a, b);
}

MediaTime operator-(MediaTime a, MediaTime b) {
    base::require(b.value != std::numeric_limits<std::int64_t>::min(), "time out of range");
    return sumOf(a, {-b.value, b.timescale});
}

std::strong_ordering operator<=>(MediaTime a, MediaTime b) {
    const WideInteger left = WideInteger{a.value} * b.timescale;
    const WideInteger right = WideInteger{b.value} * a.timescale;
    if (left == right)
        return std::strong_ordering::equal;
    return left < right ? std::strong_ordering::less : std::strong_ordering::greater;
}

bool operator==(MediaTime a, MediaTime b) {
    return (a <=> b) == std::strong_ordering::equal;
}

} // namespace vantro::media
