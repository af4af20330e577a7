#pragma once

#include "capture/GlobalKeys.h"

#include <string>

namespace vantro::capture::x11 {

/// Grabs keys of an X server, over a connection and on a thread of their own, "com.vantro.keys".
/// They come whatever client has the keyboard, and whether Num Lock and Caps Lock are on; a key
/// that is held down comes once. All are bound or none: what another client has already, what the
/// keyboard lacks and what is no key fails with a sentence that names it. Follows changes of the
/// keyboard's layout. `display` as of X11Connection.
std::unique_ptr<GlobalKeys> grabKeys(const std::vector<GlobalKey>& wished,
                                     GlobalKeys::Listener listener,
                                     const std::string& display = {});

} // namespace vantro::capture::x11
