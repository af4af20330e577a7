#include <cstdlib>
#include <string_view>

#include <gmock/gmock.h>
#include <unistd.h>

/// Devices can come and go only where umockdev is preloaded here, too.
int main(int argc, char** argv) {
    // NOLINTBEGIN(concurrency-mt-unsafe)
    constexpr auto preloaded = "libumockdev-preload.so.0";
    const char* now = std::getenv("LD_PRELOAD");
    if (now == nullptr || std::string_view(now) != preloaded) {
        setenv("LD_PRELOAD", preloaded, 1);
        setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 0);
        execv("/proc/self/exe", argv);
        return EXIT_FAILURE;
    }
    // NOLINTEND(concurrency-mt-unsafe)
    ::testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
