#pragma once

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::app::flows {
class PermissionService;
class RecordingFlow;
} // namespace vantro::app::flows

namespace vantro::ui {

/// What the main window shows.
/// `asking`: until the desktop's own dialog is answered. `confirming`: what was chosen there
/// earlier is shown.
enum class Screen {
    waiting,
    controls,
    picker,
    asking,
    confirming,
    countdown,
    selecting,
    recording,
    editor,
    empty
};

/// Follows from the phase and from what the recording flow waits for.
Screen shownScreen(const app::AppState& state, const app::flows::PermissionService& permission,
                   const app::flows::RecordingFlow& recording);

} // namespace vantro::ui
