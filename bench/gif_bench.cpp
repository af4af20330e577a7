// Makes synthetic recordings as raw BGRA video and encodes such files with GifWriter.
//   gif_bench make screen|motion WIDTH HEIGHT FRAMES OUTPUT
//   gif_bench encode WIDTH HEIGHT INPUT OUTPUT

#include "export/gif/GifWriter.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include <cairo/cairo.h>

namespace {

constexpr int framesPerSecond = 12;

struct CairoDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
template <typename Object>
using Cairo = std::unique_ptr<Object, CairoDeleter>;

void roundedRect(cairo_t* context, double x, double y, double w, double h, double radius) {
    constexpr double right = std::numbers::pi / 2;
    cairo_new_sub_path(context);
    cairo_arc(context, x + w - radius, y + radius, radius, -right, 0);
    cairo_arc(context, x + w - radius, y + h - radius, radius, 0, right);
    cairo_arc(context, x + radius, y + h - radius, radius, right, 2 * right);
    cairo_arc(context, x + radius, y + radius, radius, 2 * right, 3 * right);
    cairo_close_path(context);
}

void drawBackground(cairo_t* context) {
    const Cairo<cairo_pattern_t> gradient(cairo_pattern_create_linear(0, 0, 640, 360));
    cairo_pattern_add_color_stop_rgb(gradient.get(), 0.0, 0.36, 0.20, 0.75);
    cairo_pattern_add_color_stop_rgb(gradient.get(), 0.5, 0.16, 0.46, 0.90);
    cairo_pattern_add_color_stop_rgb(gradient.get(), 1.0, 0.95, 0.55, 0.60);
    cairo_set_source(context, gradient.get());
    cairo_paint(context);
}

void drawShadow(cairo_t* context) {
    constexpr int steps = 24; // overlapping translucent layers add up to a soft edge
    for (int step = steps; step > 0; --step) {
        roundedRect(context, 64 - step, 44 - step, 512 + 2 * step, 272 + 2 * step, 10 + step);
        cairo_set_source_rgba(context, 0, 0, 0, 0.018);
        cairo_fill(context);
    }
}

void drawText(cairo_t* context, double scroll, int typed) {
    static const char* const lines[] = {
        "The quick brown fox jumps over the lazy dog; then it rests.",
        "int main(int argc, char** argv) {
        const std::vector<std::string>
            arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() == 6 && arguments[0] == "make")
            return make(arguments[1], std::stoi(arguments[2]), std::stoi(arguments[3]),
                        std::stoi(arguments[4]), argv[6]);
        if (arguments.size() == 5 && arguments[0] == "encode")
            return encode(std::stoi(arguments[1]), std::stoi(arguments[2]), argv[4], argv[5]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "gif_bench: %s\n", error.what());
        return 1;
    }
    std::fputs("usage: gif_bench make screen|motion WIDTH HEIGHT FRAMES OUTPUT\n"
               "       gif_bench encode WIDTH HEIGHT INPUT OUTPUT\n",
               stderr);
    return 2;
}
