#pragma once

#include "base/FileDescriptor.h"
#include "base/HostClock.h"
#include "capture/CameraSource.h"

#include <expected>

namespace vantro::capture::camera {

// What a program in a sandbox has of cameras, by org.freedesktop.portal.Camera. Any thread; each
// call connects to the session bus for itself.

/// A connection to PipeWire on which the cameras can be seen. The first time the desktop asks the
/// user, who is waited for at most so long; the dialog is taken back then.
std::expected<base::FileDescriptor, CameraRefusal> askForCameras(base::HostDuration longestAnswer);

/// Whether there is a camera to ask for. False where there is no portal.
bool portalHasCamera();

} // namespace vantro::capture::camera
