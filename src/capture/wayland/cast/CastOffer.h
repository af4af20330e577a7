#pragma once

#include "capture/wayland/portal/PortalSession.h"
#include "pipewire/VideoStream.h"

namespace vantro::capture::wayland {

/// What is asked of the stream that the portal has granted.
pipewire::StreamRequest requestFor(const PortalStream& source);

} // namespace vantro::capture::wayland
