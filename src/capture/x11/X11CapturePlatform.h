#pragma once

#include "capture/CapturePlatform.h"
#include "capture/x11/windows/X11OwnProcess.h"

#include <expected>
#include <memory>
#include <string>

namespace vantro::capture::x11 {

/// Connects to an X server. `display` as in the environment variable DISPLAY, for example ":5";
/// empty takes that variable. The error is for the user: "cannot open display :5", or what about
/// its pixels cannot be read. Extensions that are missing make recording dearer, not impossible;
/// each is logged by name.
std::expected<std::unique_ptr<CapturePlatform>, std::string>
connectX11(const std::string& display = {}, IsOwnProcess isOwnProcess = isThisProcess);

} // namespace vantro::capture::x11
