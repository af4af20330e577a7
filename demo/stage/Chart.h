#pragma once

#include "stage/Drawing.h"

namespace vantro::stage {

/// A window's whole picture at an instant: flowing curves, orbiting shapes and a live figure.
/// `time` in seconds.
void drawChart(cairo_t* context, Box window, double time);

/// The bar at the top of a window, as wide as the window. Its height is `titleBarHeight`.
void drawTitleBar(cairo_t* context, double width, const char* title, bool isDark);
inline constexpr double titleBarHeight = 42;

} // namespace vantro::stage
