#include "Material.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>

#include <cairo/cairo.h>

namespace vantro::bench {
namespace {

constexpr int framesPerSecond = 60;

struct CairoDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
template <typename Object>
using Cairo = std::unique_ptr<Object, CairoDeleter>;

struct Color {
    double red, green, blue;
};

constexpr std::array lines{
    "for (const auto& frame : frames) writer.append(frame); // one after the other",
    "The quick brown fox jumps over the lazy dog; then it rests in the shade.",
    "SELECT name, size, changed FROM files WHERE size > 1024 ORDER BY changed DESC;",
    "Zooming follows the pointer smoothly and comes back when nothing happens.",
    "if (const auto found = names.find(key); found != names.end()) return found->second;",
    "Monday 09:30 planning, 11:00 interview, 14:15 review of the release, 16:00 tea",
    "error: no matching function for call to 'append(const char*, int)'"};
constexpr std::array inks{Color{0.13, 0.16, 0.20}, Color{0.10, 0.35, 0.70}, Color{0.60, 0.12, 0.25},
                          Color{0.10, 0.45, 0.30}, Color{0.45, 0.25, 0.60}};

void use(cairo_t* context, Color color) {
    cairo_set_source_rgb(context, color.red, color.green, color.blue);
}

void rectangle(cairo_t* context, double x, double y, double width, double height, Color color) {
    use(context, color);
    cairo_rectangle(context, x, y, width, height);
    cairo_fill(context);
}

void write(cairo_t* context, double x, double y, double size, const std::string& text) {
    cairo_set_font_size(context, size);
    cairo_move_to(context, x, y);
    cairo_show_text(context, text.c_str());
}

void drawFrameOfWindow(cairo_t* context, const char* title) {
    rectangle(context, 0, 0, 1920, 1080, {0.18, 0.24, 0.34});
    rectangle(context, 140, 60, 1640, 960, {0.98, 0.98, 0.98});
    rectangle(context, 140, 60, 1640, 44, {0.88, 0.89, 0.92});
    use(context, inks[0]);
    write(context, 900, 90, 20, title);
    rectangle(context, 140, 104, 280, 916, {0.93, 0.94, 0.96});
    for (int item = 0; item < 18; ++item) {
        use(context, inks[static_cast<std::size_t>(item) % inks.size()]);
        write(context, 168, 148 + item * 46, 18, "Entry number " + std::to_string(item * 37 % 91));
    }
}

void drawTyping(cairo_t* context, int frame) {
    constexpr int lettersPerSecond = 14;
    drawFrameOfWindow(context, "notes.txt");
    const int typed = frame * lettersPerSecond / framesPerSecond;
    int before = 0;
    for (int line = 0; line < 30; ++line) {
        const std::string text = lines[static_cast<std::size_t>(line) % lines.size()];
        const int shown = line < 12 ? static_cast<int>(text.size()) : typed - before;
        use(context, inks[static_cast<std::size_t>(line) % inks.size()]);
        write(context, 450, 150 + line * 28, 20,
              text.substr(0, static_cast<std::size_t>(std::max(shown, 0))));
        before += line < 12 ? 0 : static_cast<int>(text.size());
        if (line >= 12 && shown < static_cast<int>(text.size()))
            break;
    }
}

/// A turn of the wheel scrolls some lines within a third of a second; then somebody reads.
double scrolled(int frame) {
    const double turns = static_cast<double>(frame) / framesPerSecond / 0.6;
    const double part = std::min(std::fmod(turns, 1.0) * 1.8, 1.0);
    return 300 * (std::floor(turns) + part * part * (3 - 2 * part));
}

void drawPages(cairo_t* context, int frame) {
    drawFrameOfWindow(context, "A long page");
    cairo_rectangle(context, 420, 104, 1360, 916);
    cairo_clip(context);
    const double top = 104 - scrolled(frame);
    const int first = std::max(0, static_cast<int>((104 - top) / 30) - 12);
    for (int line = first; line < first + 60; ++line) {
        const double y = top + 60 + line * 30;
        const auto ink = inks[static_cast<std::size_t>(line) % inks.size()];
        if (line % 17 == 4)
            rectangle(context, 1240, y, 460, 260, ink);
        use(context, ink);
        write(context, 460, y, line % 13 == 0 ? 28 : 18,
              lines[static_cast<std::size_t>(line * 5) % lines.size()]);
    }
    cairo_reset_clip(context);
}

std::uint32_t scrambled(std::uint32_t value) {
    value = (value ^ (value >> 16)) * 0x7feb352dU;
    value = (value ^ (value >> 15)) * 0x846ca68bU;
    return value ^ (value >> 16);
}

/// Smooth noise of one scale, 0 to 255.
int noiseAt(int x, int y, int shift, std::uint32_t seed) {
    const auto corner = [&](int cx, int cy) {
        return static_cast<int>(scrambled(static_cast<std::uint32_t>(cx) * 73'856'093U ^
                                          static_cast<std::uint32_t>(cy) * 19'349'663U ^ seed) >>
                                24);
    };
    const int cell = 1 << shift;
    const int cx = x >> shift;
    const int cy = y >> shift;
    const int fx = x & (cell - 1);
    const int fy = y & (cell - 1);
    const int above = corner(cx, cy) * (cell - fx) + corner(cx + 1, cy) * fx;
    const int below = corner(cx, cy + 1) * (cell - fx) + corner(cx + 1, cy + 1) * fx;
    return (above * (cell - fy) + below * fy) >> (2 * shift);
}

/// A landscape that a camera pans over, with a little grain: as hard as filmed pictures are.
void drawFilm(media::PixelBuffer& screen, int frame) {
    constexpr int left = 480;
    constexpr int top = 160;
    constexpr int width = 1200;
    constexpr int height = 676;
    const int panX = frame * 3;
    const int panY = static_cast<int>(60 * std::sin(frame * 0.03));
    for (int y = 0; y < height; ++y) {
        auto* pixel = screen.mutableRow(0, top + y) + static_cast<std::ptrdiff_t>(left) * 4;
        for (int x = 0; x < width; ++x, pixel += 4) {
            const int coarse = noiseAt(x + panX, y + panY, 7, 1);
            const int middle = noiseAt(x + panX, y + panY, 5, 2);
            const int fine = noiseAt(x + panX, y + panY, 2, 3);
            const int grain =
                static_cast<int>(
                    scrambled(static_cast<std::uint32_t>((frame * height + y) * width + x)) >> 29) -
                4;
            const int light = (coarse * 4 + middle * 2 + fine) / 7;
            pixel[0] = static_cast<std::uint8_t>(std::clamp(light * 3 / 4 + 30 + grain, 0, 255));
            pixel[1] = static_cast<std::uint8_t>(std::clamp(light + grain, 0, 255));
            pixel[2] = static_cast<std::uint8_t>(std::clamp((light + middle) / 2 + grain, 0, 255));
        }
    }
}

} // namespace

void drawScreen(Material material, int frame, media::PixelBuffer& screen) {
    const Cairo<cairo_surface_t> surface(
        cairo_image_surface_create_for_data(screen.mutableRow(0, 0), CAIRO_FORMAT_RGB24,
                                            screen.width(), screen.height(), screen.stride(0)));
    const Cairo<cairo_t> context(cairo_create(surface.get()));
    cairo_select_font_face(context.get(), "sans", CAIRO_FONT_SLANT_NORMAL,
                           CAIRO_FONT_WEIGHT_NORMAL);
    if (material == Material::typing)
        drawTyping(context.get(), frame);
    else if (material == Material::pages)
        drawPages(context.get(), frame);
    else if (material == Material::video)
        drawFrameOfWindow(context.get(), "A film");
    else
        drawPages(context.get(), 0);
    cairo_surface_flush(surface.get());
    if (material == Material::video)
        drawFilm(screen, frame);
}

} // namespace vantro::bench
