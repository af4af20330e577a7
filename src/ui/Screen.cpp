#include "ui/Screen.h"

#include "app/flows/PermissionService.h"
#include "app/flows/RecordingFlow.h"
#include "app/state/AppState.h"

namespace vantro::ui {

Screen shownScreen(const app::AppState& state, const app::flows::PermissionService& permission,
                   const app::flows::RecordingFlow& recording) {
    const auto& preparation = recording.preparation();
    const bool countsDown = preparation.countdownRemaining() > 0;
    switch (state.phase().kind) {
    case app::AppPhase::Kind::selecting:
        return countsDown ? Screen::countdown : Screen::selecting;
    case app::AppPhase::Kind::recording:
        return Screen::recording;
    case app::AppPhase::Kind::previewing:
    case app::AppPhase::Kind::exporting:
        return state.document().recording() ? Screen::editor : Screen::empty;
    case app::AppPhase::Kind::idle:
        break;
    }
    if (!permission.screenRecordingGranted())
        return Screen::waiting;
    if (preparation.isWindowPickerShown())
        return Screen::picker;
    if (preparation.isDesktopAsking())
        return Screen::asking;
    if (preparation.isConfirming())
        return Screen::confirming;
    return countsDown ? Screen::countdown : Screen::controls;
}

} // namespace vantro::ui
