#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace vantro::test {

/// Waits until `condition` holds; false when it does not in time.
inline bool eventually(const std::function<bool()>& condition,
                       std::chrono::seconds atMost = std::chrono::seconds(10)) {
    const auto limit = std::chrono::steady_clock::now() + atMost;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace vantro::test
