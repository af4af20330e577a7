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
/// `asking`: until the desktop's own dialog is answered.
enum class Screen {
    waiting,
    controls,
    picker,
    asking,
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
