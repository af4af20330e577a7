#pragma once

#include <cstdint>
#include <source_location>
#include <string_view>

namespace vantro::base {

/// Logs `what` with its place and aborts. For broken invariants and arithmetic faults only: what a
/// user can cause is reported as an error instead. Any thread.
[[noreturn]] void fatal(std::string_view what,
                        std::source_location where = std::source_location::current());

/// Aborts through fatal() unless `condition` holds; stays on in release builds.
inline void require(bool condition, std::string_view what,
                    std::source_location where = std::source_location::current()) {
    if (!condition)
        fatal(what, where);
}

/// a * b, where an overflow is fatal.
std::int64_t checkedMultiply(std::int64_t a, std::int64_t b,
                             std::source_location where = std::source_location::current());

/// `value` truncated towards zero; not finite or out of range is fatal.
std::int64_t truncatedToInteger(double value,
                                std::source_location where = std::source_location::current());

} // namespace vantro::base
