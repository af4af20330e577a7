#pragma once

#include <cstdint>
#include <functional>

namespace vantro::capture::x11 {

/// Tells by its number whether a process is this application: its windows never appear in a screen
/// or area recording, and presses in them are no clicks. Any thread.
using IsOwnProcess = std::function<bool(std::int64_t process)>;

/// This process alone.
bool isThisProcess(std::int64_t process);

} // namespace vantro::capture::x11
