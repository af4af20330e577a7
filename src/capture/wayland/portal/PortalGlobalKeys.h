#pragma once

#include "capture/GlobalKeys.h"

namespace vantro::capture::wayland {

/// Binds keys through the desktop's portal for shortcuts, which asks the user the first time and
/// has the last word on which keys they are. Fails with `keyboardSettingsText` where there is none.
std::unique_ptr<GlobalKeys> bindPortalKeys(const std::vector<GlobalKey>& wished,
                                           const GlobalKeys::Listener& listener);

/// Whether the desktop has that portal. Waits for its answer, for a few seconds at most.
bool hasPortalKeys();

} // namespace vantro::capture::wayland
