#pragma once

#include "capture/CameraDevices.h"
#include "capture/CapturePlatform.h"
#include "capture/SoundDevices.h"

#include <memory>

namespace vantro::app {

/// Whether the session is a Wayland one, whatever our own window is shown by.
bool isWaylandSession();

/// The desktop that this program runs on. Throws VantroError captureStartFailed, which says which
/// display cannot be reached or what it lacks.
std::unique_ptr<capture::CapturePlatform> connectDesktop();

/// The sound of that desktop.
std::unique_ptr<capture::SoundDevices> desktopSound();

/// Its cameras.
std::unique_ptr<capture::CameraDevices> desktopCameras();

/// What can be recorded now. Throws std::runtime_error where the desktop does not let that be
/// listed, else VantroError captureStartFailed.
capture::ShareableContent shareableContent(
    capture::CapturePlatform& platform,
    capture::CapturePlatform::WindowIcons icons = capture::CapturePlatform::WindowIcons::leftOut);

} // namespace vantro::app
