#pragma once

#include <cstdint>
#include <fstream>

#include <malloc.h>
#include <unistd.h>

namespace vantro::test {

/// Bytes of memory that this process occupies, without what the allocator only keeps at hand: how
/// much that is depends on how the threads happen to run.
inline std::int64_t residentMemory() {
    malloc_trim(0);
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
