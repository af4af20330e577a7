#include "app/Desktop.h"

#include "capture/camera/DesktopCameras.h"
#include "capture/sound/PulseSoundDevices.h"
#include "capture/x11/X11CapturePlatform.h"
#include "model/VantroError.h"

namespace vantro::app {
namespace {

template <typename Value>
Value valueOrThrow(std::expected<Value, std::string> result) {
    if (!result)
        throw model::VantroError(model::VantroError::Kind::captureStartFailed, result.error());
    return *std::move(result);
}

} // namespace

std::unique_ptr<capture::CapturePlatform> connectDesktop() {
    return valueOrThrow(capture::x11::connectX11());
}

std::unique_ptr<capture::SoundDevices> desktopSound() {
    return capture::sound::makePulseSoundDevices();
}

std::unique_ptr<capture::CameraDevices> desktopCameras() {
    return capture::camera::makeDesktopCameras();
}

capture::ShareableContent shareableContent(capture::CapturePlatform& platform,
                                           capture::CapturePlatform::WindowIcons icons) {
    return valueOrThrow(platform.shareableContent(icons));
}

} // namespace vantro::app
