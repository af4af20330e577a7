#pragma once

#include "capture/CameraDevices.h"

#include <memory>

namespace vantro::capture::camera {

/// The cameras of the desktop: in a sandbox those that its portal lets us have, else those of the
/// user's PipeWire server, and where there is none those of the system.
std::unique_ptr<CameraDevices> makeDesktopCameras();

/// Those that the portal lets us have, where they are asked for at most so long. Of these nothing
/// is known before the user has allowed it but whether there are any.
std::unique_ptr<CameraDevices> makePortalCameras(base::HostDuration longestAnswer);

/// Whether what we may have is decided by a portal.
bool isInSandbox();

} // namespace vantro::capture::camera
