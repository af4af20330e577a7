#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace vantro::test {

/// Waits until `condition` holds; false when it does not within ten seconds.
inline bool eventually(const std::function<bool()>& condition) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace vantro::test
