#pragma once

#include <chrono>
#include <cstdint>

namespace vantro::base {

/// An instant on CLOCK_MONOTONIC, the one clock that frames, cursor samples and clicks share
/// (std::chrono::steady_clock is that clock on Linux). Resolution: one nanosecond.
using HostTime = std::chrono::time_point<std::chrono::steady_clock, std::chrono::nanoseconds>;
using HostDuration = std::chrono::nanoseconds;

inline HostTime hostNow() {
    return std::chrono::time_point_cast<HostDuration>(std::chrono::steady_clock::now());
}

/// Floating-point seconds of a span, as records store them.
inline double inSeconds(HostDuration span) {
    return static_cast<double>(span.count()) / 1'000'000'000.0;
}

} // namespace vantro::base
