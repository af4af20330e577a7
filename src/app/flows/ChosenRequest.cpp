#include "app/flows/ChosenRequest.h"

namespace vantro::app::flows {

capture::RecordingRequest requestOf(const AppState& state, const capture::PlatformAbilities& able) {
    capture::RecordingRequest request{
        .mode = state.captureMode(),
        .displayID = state.selectedDisplayID(),
        .sources = {.systemSound = state.systemAudioEnabled() && able.systemSound.isAvailable(),
                    .microphone = state.microphoneAudioEnabled() && able.microphone.isAvailable(),
                    .camera = state.webcamEnabled() && able.camera.isAvailable(),
                    .microphoneDevice = state.microphoneDevice(),
                    .cameraDevice = state.webcamDevice()}};
    if (const auto& window = state.selectedWindow())
        request.windowID = window->windowID;
    if (able.listsContent.isAvailable())
        request.area = state.selectedRect();
    return request;
}

} // namespace vantro::app::flows
