#pragma once

#include "capture/CapturePlatform.h"

#include <memory>

namespace vantro {

/// The desktop that this program runs on. Throws VantroError captureStartFailed, which says which
/// display cannot be reached or what it lacks.
std::unique_ptr<CapturePlatform> connectDesktop();

/// What can be recorded now. Throws VantroError captureStartFailed.
ShareableContent shareableContent(CapturePlatform& platform);

} // namespace vantro
