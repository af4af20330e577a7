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
        "int main(int argc, char** argv) { return run(argc, argv); }",
        "Recording a screen needs 60 pictures a second at most.",
        "    for (const auto& frame : frames) writer.append(frame);",
        "Zooming follows the pointer smoothly and comes back again.",
        "SELECT name, size FROM files WHERE size > 1024 ORDER BY 2;",
        "Colors: teal, crimson, amber, violet, olive and slate.",
    };
    static const double colors[][3] = {
        {0.1, 0.1, 0.1}, {0.1, 0.3, 0.7}, {0.6, 0.1, 0.2}, {0.1, 0.5, 0.3}, {0.4, 0.2, 0.6}};
    cairo_select_font_face(context, "sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, 11);
    for (int line = 0; line < 80; ++line) {
        const double y = 84 + line * 16 - scroll;
        if (y < 60 || y > 330)
            continue;
        const auto& color = colors[line % 5];
        cairo_set_source_rgb(context, color[0], color[1], color[2]);
        cairo_move_to(context, 180, y);
        cairo_show_text(context, lines[(line * 5) % 7]);
    }
    const std::string typedText = std::string(lines[1]).substr(0, static_cast<std::size_t>(typed));
    cairo_set_source_rgb(context, 0, 0, 0);
    cairo_move_to(context, 84, 300);
    cairo_show_text(context, typedText.c_str());
}

void drawWindow(cairo_t* context, double scroll, int typed) {
    cairo_save(context);
    roundedRect(context, 64, 44, 512, 272, 10);
    cairo_clip(context);
    cairo_set_source_rgb(context, 1, 1, 1);
    cairo_paint(context);
    drawText(context, scroll, typed);
    cairo_set_source_rgb(context, 0.93, 0.93, 0.95);
    cairo_rectangle(context, 64, 44, 512, 24);
    cairo_rectangle(context, 64, 68, 100, 220);
    cairo_fill(context);
    static const double buttons[][3] = {{1, 0.37, 0.34}, {1, 0.74, 0.18}, {0.16, 0.79, 0.25}};
    for (int button = 0; button < 3; ++button) {
        cairo_set_source_rgb(context, buttons[button][0], buttons[button][1], buttons[button][2]);
        cairo_arc(context, 80 + button * 16, 56, 5, 0, 2 * std::numbers::pi);
        cairo_fill(context);
    }
    for (int item = 0; item < 8; ++item) {
        cairo_set_source_rgb(context, 0.2 + item * 0.09, 0.5, 0.9 - item * 0.07);
        roundedRect(context, 74, 80 + item * 24, 80, 16, 4);
        cairo_fill(context);
    }
    cairo_restore(context);
}

void drawCursor(cairo_t* context, double x, double y) {
    static const double outline[][2] = {{0, 0},   {0, 17}, {4, 13}, {7, 19},
                                        {10, 18}, {7, 12}, {12, 12}};
    for (const auto& point : outline)
        cairo_line_to(context, x + point[0], y + point[1]);
    cairo_close_path(context);
    cairo_set_source_rgb(context, 0, 0, 0);
    cairo_fill_preserve(context);
    cairo_set_source_rgb(context, 1, 1, 1);
    cairo_set_line_width(context, 1.2);
    cairo_stroke(context);
}

double eased(double t) {
    t = std::fmin(1, std::fmax(0, t));
    return t * t * (3 - 2 * t);
}

/// Ten seconds that repeat: the pointer moves; text scrolls; zoom in; typing; zoom out; rest.
void drawScreen(cairo_t* context, int width, int height, int frame) {
    const double t = std::fmod(static_cast<double>(frame) / framesPerSecond, 10);
    const double zoom = 1 + eased(t - 4) - eased(t - 7);
    const double x = 120 + 300 * eased(t / 2) - 180 * eased(t - 3.2);
    const double y = 90 + 120 * eased(t / 1.5) + 80 * eased(t - 3.2);
    const double scroll = 240 * eased((t - 2) / 2);
    const double focusX = 320 + (220 - 320) * (zoom - 1) * 2;
    const double focusY = 180 + (260 - 180) * (zoom - 1) * 2;
    cairo_identity_matrix(context);
    cairo_scale(context, width / 640.0, height / 360.0);
    cairo_translate(context, 320, 180);
    cairo_scale(context, zoom, zoom);
    cairo_translate(context, -320 + (320 - focusX) / 2, -180 + (180 - focusY) / 2);
    drawBackground(context);
    drawShadow(context);
    drawWindow(context, scroll, static_cast<int>(std::fmin(55, std::fmax(0, (t - 5) * 14))));
    drawCursor(context, x, y);
}

/// Everything changes in each picture: turning color fields under film grain.
void drawMotion(cairo_surface_t* surface, int frame) {
    auto* pixels = cairo_image_surface_get_data(surface);
    const int width = cairo_image_surface_get_width(surface);
    const int height = cairo_image_surface_get_height(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    std::uint32_t random = 12345U + static_cast<std::uint32_t>(frame) * 7919U;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            random = random * 1664525U + 1013904223U;
            const double grain = (static_cast<double>(random >> 24) - 127.5) / 16;
            const double u = static_cast<double>(x) / width * 6;
            const double v = static_cast<double>(y) / height * 6;
            for (int channel = 0; channel < 3; ++channel) {
                const double phase = frame * 0.12 * (1 + channel * 0.3) + channel * 2;
                const double wave = std::sin(u + phase) + std::cos(v - phase * 0.7 + u * 0.3);
                const double value = 127.5 + 55 * wave + grain;
                pixels[y * stride + x * 4 + channel] = static_cast<std::uint8_t>(value);
            }
            pixels[y * stride + x * 4 + 3] = 255;
        }
    }
}

int make(const std::string& kind, int width, int height, int frames, const char* path) {
    const Cairo<cairo_surface_t> surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    const Cairo<cairo_t> context(cairo_create(surface.get()));
    std::ofstream file(path, std::ios::binary);
    for (int frame = 0; frame < frames; ++frame) {
        if (kind == "screen")
            drawScreen(context.get(), width, height, frame);
        else
            drawMotion(surface.get(), frame);
        cairo_surface_flush(surface.get());
        const auto* rows = cairo_image_surface_get_data(surface.get());
        for (int y = 0; y < height; ++y)
            file.write(reinterpret_cast<const char*>(
                           rows + static_cast<std::ptrdiff_t>(y) *
                                      cairo_image_surface_get_stride(surface.get())),
                       std::streamsize{4} * width);
        cairo_surface_mark_dirty(surface.get());
    }
    return file.flush() ? 0 : 1;
}

int encode(int width, int height, const char* input, const char* output) {
    std::ifstream file(input, std::ios::binary);
    const auto frame =
        vantro::media::PixelBuffer::allocate(vantro::media::PixelFormat::bgra, width, height);
    vantro::exporting::gif::GifWriter writer(output, width, height, {1, framesPerSecond});
    for (;;) {
        for (int y = 0; y < height; ++y)
            file.read(reinterpret_cast<char*>(frame->mutableRow(0, y)), std::streamsize{4} * width);
        if (!file)
            break;
        writer.append(*frame);
    }
    writer.finish();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
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
