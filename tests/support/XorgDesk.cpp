#include "support/XorgDesk.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include <unistd.h>

namespace vantro::test {
namespace {

// The wrapper in /usr/bin looks for a graphics card first.
constexpr const char* program = "/usr/lib/xorg/Xorg";

constexpr const char* settings = R"(
Section "ServerFlags"
  Option "AutoAddDevices" "false"
  Option "AutoAddGPU" "false"
  Option "DontVTSwitch" "true"
EndSection
Section "Device"
  Identifier "card"
  Driver "dummy"
  VideoRam 64000
EndSection
Section "Monitor"
  Identifier "monitor"
  HorizSync 5.0-1000.0
  VertRefresh 5.0-300.0
EndSection
Section "Screen"
  Identifier "screen"
  Device "card"
  Monitor "monitor"
  DefaultDepth 24
  SubSection "Display"
    Depth 24
    Modes "800x600" "1280x720" "640x400"
    Virtual 2560 1024
  EndSubSection
EndSection
)";

} // namespace

bool canRunXorg() {
    return geteuid() == 0 && std::filesystem::exists(program);
}

std::vector<std::string> xorgCommand(const std::filesystem::path& folder, int displayNumberFile) {
    std::filesystem::create_directories(folder / "none");
    std::ofstream(folder / "settings") << settings;
    return {program,         "-displayfd",        std::to_string(displayNumberFile),
            "-config",       folder / "settings", "-configdir",
            folder / "none", "-logfile",          folder / "log",
            "-noreset",      "-nolisten",         "tcp",
            "-sharevts",     "-novtswitch",       "vt7"};
}

void runXrandr(const std::string& display, const std::vector<std::string>& arguments) {
    std::string command = "xrandr --display " + display;
    for (const auto& argument : arguments)
        command += " '" + argument + "'";
    if (std::system(command.c_str()) != 0) // NOLINT(concurrency-mt-unsafe)
        throw std::runtime_error("xrandr failed");
}

} // namespace vantro::test
