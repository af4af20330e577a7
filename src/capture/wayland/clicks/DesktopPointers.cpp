#include "capture/wayland/clicks/DesktopPointers.h"

#include <cstdlib>

namespace vantro::capture::wayland {

clicks::PointerSettings desktopPointers() {
    const auto valueOf = [](const char* name) {
        const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): never changed
        return std::string(value != nullptr ? value : "");
    };
    const auto desktop = valueOf("XDG_CURRENT_DESKTOP");
    if (desktop.contains("KDE"))
        return askKWin();
    if (desktop.contains("GNOME"))
        return askGnome();
    const auto sway = valueOf("SWAYSOCK");
    return sway.empty() ? clicks::PointerSettings() : askSway(sway);
}

} // namespace vantro::capture::wayland
