// vantro-clickd: tells programs of the user at the screen when mouse buttons are pressed, if polkit
// lets them know. What leaves it is `clicks::PressRecord`, nothing else.
#include "clickd/Service.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace {

constexpr std::chrono::seconds longestIdle(30);

} // namespace

/// An argument is another time, in seconds, to stay without anybody who watches.
int main(int argc, char** argv) {
    try {
        vantro::clickd::Service().run(
            argc > 1 ? std::chrono::seconds(std::strtol(argv[1], nullptr, 10)) : longestIdle);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vantro-clickd: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
