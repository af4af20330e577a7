#pragma once

#include "app/state/AppState.h"
#include "capture/PlatformAbilities.h"
#include "capture/RecordingRequest.h"

namespace vantro::app::flows {

/// What the user's choices in the state ask to be recorded on a desktop that can do as much. A
/// switch stands for off where there is nothing to switch on, and where the desktop itself asks
/// what to record, the area is left to be selected on that.
capture::RecordingRequest requestOf(const AppState& state, const capture::PlatformAbilities& able);

} // namespace vantro::app::flows
