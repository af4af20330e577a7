#pragma once

#include "media/values/Fraction.h"

#include <compare>
#include <cstdint>

namespace vantro::media {

/// A time on a media time line as the exact fraction value / timescale of a second.
///
/// Sums and comparisons are exact; arithmetic that leaves 64 bits is fatal. The timescale is
/// positive. Rounding happens only where a function says so, to the nearest tick.
struct MediaTime {
    static constexpr std::int32_t boundaryTimescale = 600;

    std::int64_t value = 0;
    std::int32_t timescale = boundaryTimescale;

    /// The nearest tick to `seconds`; not finite or out of range is fatal.
    static MediaTime fromSeconds(double seconds, std::int32_t timescale = boundaryTimescale);

    /// As a timescale of 32 bits can express it; else the nearest tick of a very fine one.
    static MediaTime nearestTo(const Fraction& seconds);

    /// The fraction with a small denominator whose double `seconds` is: of the number that a time's
    /// `seconds` gave, that time again, so that 0.1 is a tenth. Where there is none, the nearest
    /// tick of a very fine timescale; not finite or out of range is fatal.
    static MediaTime simplestOf(double seconds);

    double seconds() const { return static_cast<double>(value) / timescale; }
    /// Not explicit: every time is a fraction.
    operator Fraction() const { return {value, timescale}; }
    /// The nearest tick of another timescale, halves away from zero.
    MediaTime rescaled(std::int32_t newTimescale) const;

    friend MediaTime operator+(MediaTime a, MediaTime b);
    friend MediaTime operator-(MediaTime a, MediaTime b);
    friend std::strong_ordering operator<=>(MediaTime a, MediaTime b);
    friend bool operator==(MediaTime a, MediaTime b);
};

/// A half-open span: start up to but not including start + duration.
struct MediaTimeRange {
    MediaTime start;
    MediaTime duration;

    MediaTime end() const { return start + duration; }
    bool contains(MediaTime t) const { return t >= start && t < end(); }
    bool operator==(const MediaTimeRange&) const = default;
};

} // namespace vantro::media
