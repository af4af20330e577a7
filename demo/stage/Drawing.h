#pragma once

#include <memory>
#include <string>

#include <cairo.h>

namespace vantro::stage {

struct FreeCairo {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
using Surface = std::unique_ptr<cairo_surface_t, FreeCairo>;
using Context = std::unique_ptr<cairo_t, FreeCairo>;
using Pattern = std::unique_ptr<cairo_pattern_t, FreeCairo>;

/// Pixels, y from the top.
struct Box {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    bool contains(double px, double py) const {
        return px >= x && px < x + width && py >= y && py < y + height;
    }
    double centerX() const { return x + width / 2; }
    double centerY() const { return y + height / 2; }
};

/// 0xRRGGBB with an opacity from 0 to 1.
void setColor(cairo_t* context, unsigned rgb, double opacity = 1);
void fillBox(cairo_t* context, Box box, double radius, unsigned rgb, double opacity = 1);
void strokeBox(cairo_t* context, Box box, double radius, unsigned rgb, double lineWidth);
void fillCircle(cairo_t* context, double x, double y, double radius, unsigned rgb,
                double opacity = 1);

struct TextStyle {
    double size = 15; ///< pixels
    unsigned rgb = 0x1f2937;
    bool isBold = false;
    double opacity = 1;
};
/// With its baseline's left end at (x, y).
void drawText(cairo_t* context, double x, double y, const std::string& text,
              const TextStyle& style);
/// In the middle of `box`.
void drawCenteredText(cairo_t* context, Box box, const std::string& text, const TextStyle& style);

/// A color between two, at `share` from 0 to 1.
unsigned mixed(unsigned from, unsigned to, double share);
/// Slow, fast, slow: 0 to 1.
double eased(double share);

} // namespace vantro::stage
