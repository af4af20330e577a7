#pragma once

#include "capture/CameraDevices.h"

#include <memory>

namespace vantro::capture::camera {

/// The cameras of the desktop: in a sandbox those that its portal lets us have, else those of the
/// user's PipeWire server, and where there is none those of the system.
std::unique_ptr<CameraDevices> makeDesktopCameras();

/// Whether what we may have is decided by a portal.
bool isInSandbox();

} // namespace vantro::capture::camera
