#pragma once

#include <cstdint>
#include <fstream>

#include <unistd.h>

namespace vantro::test {

/// Bytes of memory that this process occupies.
inline std::int64_t residentMemory() {
    std::int64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    return pages * sysconf(_SC_PAGESIZE);
}

// The address sanitizer keeps what is freed, so that nothing can be said about memory under it.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool canMeasureMemory = false;
#else
inline constexpr bool canMeasureMemory = true;
#endif

} // namespace vantro::test
