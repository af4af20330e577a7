#include "base/Fatal.h"

#include "base/Log.h"

#include <cmath>
#include <cstdlib>

namespace vantro::base {

void fatal(std::string_view what, std::source_location where) {
    writeLog(LogLevel::fatal,
             fmt::format("Fatal: {} ({}:{})", what, where.file_name(), where.line()));
    std::abort();
}

std::int64_t checkedMultiply(std::int64_t a, std::int64_t b, std::source_location where) {
    std::int64_t product = 0;
    if (__builtin_mul_overflow(a, b, &product))
        fatal("integer product out of range", where);
    return product;
}

std::int64_t truncatedToInteger(double value, std::source_location where) {
    constexpr double limit = 9.2e18; // just below 2^63
    if (!std::isfinite(value) || value < -limit || value > limit)
        fatal("number is not finite or too large for an integer", where);
    return static_cast<std::int64_t>(value);
}

} // namespace vantro::base
