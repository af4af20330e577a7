#pragma once

#include "stage/Drawing.h"

#include <vector>

namespace vantro::stage {

/// Dawn hills, with a soft shadow beneath each of the windows that will stand on them.
void drawWallpaper(cairo_t* context, Box screen, const std::vector<Box>& windows);

} // namespace vantro::stage
