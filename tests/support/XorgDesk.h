#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vantro::test {

/// A real Xorg server without hardware: outputs DUMMY0 to DUMMY15 that can be switched like those
/// of a graphics card. It needs root for a console that it does not use.
bool canRunXorg();

/// How to start it. `folder` holds its settings and its log.
std::vector<std::string> xorgCommand(const std::filesystem::path& folder, int displayNumberFile);

/// Runs xrandr on a display to its end, as in `{"--output", "DUMMY1", "--off"}`. Throws
/// std::runtime_error when it fails.
void runXrandr(const std::string& display, const std::vector<std::string>& arguments);

} // namespace vantro::test
