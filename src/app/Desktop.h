#pragma once

#include "capture/CameraDevices.h"
#include "capture/CapturePlatform.h"
#include "capture/GlobalKeys.h"
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

/// Binds keys that work whatever program has the keyboard: on Wayland the desktop chooses them.
std::unique_ptr<capture::GlobalKeys> bindGlobalKeys(const std::vector<capture::GlobalKey>& wished,
                                                    const capture::GlobalKeys::Listener& listener);
/// Whether that can be had, asked of the desktop now.
capture::Ability globalKeysAbility();

/// What can be recorded now. Throws std::runtime_error where the desktop does not let that be
/// listed, else VantroError captureStartFailed.
capture::ShareableContent shareableContent(
    capture::CapturePlatform& platform,
    capture::CapturePlatform::WindowIcons icons = capture::CapturePlatform::WindowIcons::leftOut);

} // namespace vantro::app
