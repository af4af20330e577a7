#pragma once

#include "clicks/PointerSettings.h"

#include <string>

namespace vantro::capture::wayland {

/// What the user has made of mice and touchpads in the settings of this desktop; nothing of what
/// cannot be found out. Of several devices of a kind the first counts. May take a second.
clicks::PointerSettings desktopPointers();

/// From what `gsettings list-recursively org.gnome.desktop.peripherals` prints.
clicks::PointerSettings gnomePointers(const std::string& printed);
/// From sway's answer to GET_INPUTS.
clicks::PointerSettings swayPointers(const std::string& json);

// Each asks a desktop that runs; nothing where it does not answer.
clicks::PointerSettings askGnome();
clicks::PointerSettings askKWin();
clicks::PointerSettings askSway(const std::string& socket);

} // namespace vantro::capture::wayland
