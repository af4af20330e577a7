#include "app/Desktop.h"

#include "capture/camera/DesktopCameras.h"
#include "capture/sound/PulseSoundDevices.h"
#include "capture/wayland/WaylandCapturePlatform.h"
#include "capture/wayland/portal/PortalGlobalKeys.h"
#include "capture/x11/X11CapturePlatform.h"
#include "capture/x11/input/X11GlobalKeys.h"
#include "model/VantroError.h"

#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace vantro::app {
namespace {

template <typename Value>
Value valueOrThrow(std::expected<Value, std::string> result) {
    if (!result)
        throw model::VantroError(model::VantroError::Kind::captureStartFailed, result.error());
    return *std::move(result);
}

} // namespace

/// Under XWayland an X server answers as well, but shows black. Toolkits may have been told to use
/// it, so they are not asked.
bool isWaylandSession() {
    const auto valueOf = [](const char* name) {
        const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): never changed
        return std::string_view(value != nullptr ? value : "");
    };
    return !valueOf("WAYLAND_DISPLAY").empty() || valueOf("XDG_SESSION_TYPE") == "wayland";
}

std::unique_ptr<capture::CapturePlatform> connectDesktop() {
    return valueOrThrow(isWaylandSession() ? capture::wayland::connectPortal()
                                           : capture::x11::connectX11());
}

std::unique_ptr<capture::SoundDevices> desktopSound() {
    return capture::sound::makePulseSoundDevices();
}

std::unique_ptr<capture::CameraDevices> desktopCameras() {
    return capture::camera::makeDesktopCameras();
}

std::unique_ptr<capture::GlobalKeys> bindGlobalKeys(const std::vector<capture::GlobalKey>& wished,
                                                    const capture::GlobalKeys::Listener& listener) {
    return isWaylandSession() ? capture::wayland::bindPortalKeys(wished, listener)
                              : capture::x11::grabKeys(wished, listener);
}

capture::Ability globalKeysAbility() {
    if (!isWaylandSession() || capture::wayland::hasPortalKeys())
        return {};
    return {capture::keyboardSettingsText};
}

capture::ShareableContent shareableContent(capture::CapturePlatform& platform,
                                           capture::CapturePlatform::WindowIcons icons) {
    if (const auto listing = platform.abilities().listsContent; !listing.isAvailable())
        throw std::runtime_error(listing.whyNot);
    return valueOrThrow(platform.shareableContent(icons));
}

} // namespace vantro::app
