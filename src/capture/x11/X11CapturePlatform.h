#pragma once

#include "capture/CapturePlatform.h"

#include <expected>
#include <memory>
#include <string>

namespace vantro {

/// Connects to an X server. `display` as in the environment variable DISPLAY, for example ":5";
/// empty takes that variable. The error is for the user: "cannot open display :5", or what about
/// its pixels cannot be read. Extensions that are missing make recording dearer, not impossible;
/// each is logged by name.
std::expected<std::unique_ptr<CapturePlatform>, std::string>
connectX11(const std::string& display = {});

} // namespace vantro
