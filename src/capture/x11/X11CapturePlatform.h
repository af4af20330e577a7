#pragma once

#include "capture/CapturePlatform.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string>

namespace vantro::capture::x11 {

/// Tells by its number whether a process is this application: its windows never appear in a screen
/// or area recording, and presses in them are no clicks. Any thread.
using IsOwnProcess = std::function<bool(std::int64_t process)>;

/// This process alone.
bool isThisProcess(std::int64_t process);

/// Connects to an X server. `display` as in the environment variable DISPLAY, for example ":5";
/// empty takes that variable. The error is for the user: "cannot open display :5", or what about
/// its pixels cannot be read. Extensions that are missing make recording dearer, not impossible;
/// each is logged by name.
std::expected<std::unique_ptr<CapturePlatform>, std::string>
connectX11(const std::string& display = {}, IsOwnProcess isOwnProcess = isThisProcess);

} // namespace vantro::capture::x11
