#pragma once

#include "base/HostClock.h"

namespace vantro::capture::wayland {

/// Has the compositor draw its screens twice, though nothing on them changes: a transparent pixel
/// comes onto each, and goes once it has been drawn. It takes neither input nor focus nor room.
/// Waits a few frames at most. False where the compositor has no layers for programs or does not
/// answer; then it never will. Any thread.
bool redrawScreens(base::HostDuration longestAnswer);

} // namespace vantro::capture::wayland
