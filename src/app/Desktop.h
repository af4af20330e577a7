#pragma once

#include "capture/CameraDevices.h"
#include "capture/CapturePlatform.h"
#include "capture/SoundDevices.h"

#include <memory>

namespace vantro::app {

/// The desktop that this program runs on. Throws VantroError captureStartFailed, which says which
/// display cannot be reached or what it lacks.
std::unique_ptr<capture::CapturePlatform> connectDesktop();

/// The sound of that desktop.
std::unique_ptr<capture::SoundDevices> desktopSound();

/// Its cameras.
std::unique_ptr<capture::CameraDevices> desktopCameras();

/// What can be recorded now. Throws VantroError captureStartFailed.
capture::ShareableContent shareableContent(
    capture::CapturePlatform& platform,
    capture::CapturePlatform::WindowIcons icons = capture::CapturePlatform::WindowIcons::leftOut);

} // namespace vantro::app
