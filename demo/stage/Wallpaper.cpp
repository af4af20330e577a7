#include "stage/Wallpaper.h"

#include <cmath>

namespace vantro::stage {
namespace {

void drawSky(cairo_t* context, Box screen) {
    const Pattern sky(cairo_pattern_create_linear(0, 0, screen.width * 0.25, screen.height));
    cairo_pattern_add_color_stop_rgb(sky.get(), 0.0, 0.16, 0.20, 0.42);
    cairo_pattern_add_color_stop_rgb(sky.get(), 0.45, 0.45, 0.40, 0.66);
    cairo_pattern_add_color_stop_rgb(sky.get(), 0.75, 0.92, 0.62, 0.58);
    cairo_pattern_add_color_stop_rgb(sky.get(), 1.0, 0.99, 0.80, 0.62);
    cairo_set_source(context, sky.get());
    cairo_paint(context);
    const double sunX = screen.width * 0.72;
    const double sunY = screen.height * 0.62;
    const Pattern sun(cairo_pattern_create_radial(sunX, sunY, 20, sunX, sunY, screen.height * 0.5));
    cairo_pattern_add_color_stop_rgba(sun.get(), 0, 1, 0.93, 0.78, 0.85);
    cairo_pattern_add_color_stop_rgba(sun.get(), 1, 1, 0.80, 0.60, 0);
    cairo_set_source(context, sun.get());
    cairo_paint(context);
}

void drawHills(cairo_t* context, Box screen, double base, double height, double wave,
               unsigned rgb) {
    cairo_move_to(context, 0, screen.height);
    constexpr int points = 480;
    for (int point = 0; point <= points; ++point) {
        const double x = screen.width * point / points;
        const double at = x / screen.width * wave;
        const double rise = std::sin(at) + 0.4 * std::sin(2.7 * at + wave);
        cairo_line_to(context, x, screen.height * (base - height * rise));
    }
    cairo_line_to(context, screen.width, screen.height);
    cairo_close_path(context);
    setColor(context, rgb);
    cairo_fill(context);
}

/// Many faint boxes on top of each other add up to a blurred edge.
void drawShadow(cairo_t* context, Box window) {
    constexpr int layers = 24;
    constexpr double offset = 10;
    for (int layer = 0; layer < layers; ++layer) {
        const double spread = layers - layer;
        fillBox(context,
                {window.x - spread, window.y - spread + offset, window.width + 2 * spread,
                 window.height + 2 * spread},
                spread + 8, 0x101830, 0.014);
    }
}

} // namespace

void drawWallpaper(cairo_t* context, Box screen, const std::vector<Box>& windows) {
    drawSky(context, screen);
    drawHills(context, screen, 0.78, 0.06, 7.0, 0x8a5f86);
    drawHills(context, screen, 0.86, 0.05, 9.5, 0x5a4374);
    drawHills(context, screen, 0.95, 0.04, 6.0, 0x33305c);
    for (const Box& window : windows)
        drawShadow(context, window);
}

} // namespace vantro::stage
