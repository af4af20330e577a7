#include "stage/Drawing.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vantro::stage {
namespace {

constexpr double pi = std::numbers::pi;

void addRoundedBox(cairo_t* context, Box box, double radius) {
    radius = std::min({radius, box.width / 2, box.height / 2});
    const double right = box.x + box.width;
    const double bottom = box.y + box.height;
    cairo_new_sub_path(context);
    cairo_arc(context, right - radius, box.y + radius, radius, -pi / 2, 0);
    cairo_arc(context, right - radius, bottom - radius, radius, 0, pi / 2);
    cairo_arc(context, box.x + radius, bottom - radius, radius, pi / 2, pi);
    cairo_arc(context, box.x + radius, box.y + radius, radius, pi, 1.5 * pi);
    cairo_close_path(context);
}

void selectFont(cairo_t* context, const TextStyle& style) {
    cairo_select_font_face(context, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL,
                           style.isBold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, style.size);
    setColor(context, style.rgb, style.opacity);
}

} // namespace

void setColor(cairo_t* context, unsigned rgb, double opacity) {
    cairo_set_source_rgba(context, (rgb >> 16 & 255) / 255.0, (rgb >> 8 & 255) / 255.0,
                          (rgb & 255) / 255.0, opacity);
}

void fillBox(cairo_t* context, Box box, double radius, unsigned rgb, double opacity) {
    addRoundedBox(context, box, radius);
    setColor(context, rgb, opacity);
    cairo_fill(context);
}

void strokeBox(cairo_t* context, Box box, double radius, unsigned rgb, double lineWidth) {
    const double inset = lineWidth / 2;
    addRoundedBox(context,
                  {box.x + inset, box.y + inset, box.width - lineWidth, box.height - lineWidth},
                  radius);
    setColor(context, rgb);
    cairo_set_line_width(context, lineWidth);
    cairo_stroke(context);
}

void fillCircle(cairo_t* context, double x, double y, double radius, unsigned rgb, double opacity) {
    cairo_new_sub_path(context);
    cairo_arc(context, x, y, radius, 0, 2 * pi);
    setColor(context, rgb, opacity);
    cairo_fill(context);
}

void drawText(cairo_t* context, double x, double y, const std::string& text,
              const TextStyle& style) {
    selectFont(context, style);
    cairo_move_to(context, x, y);
    cairo_show_text(context, text.c_str());
}

void drawCenteredText(cairo_t* context, Box box, const std::string& text, const TextStyle& style) {
    selectFont(context, style);
    cairo_text_extents_t size;
    cairo_text_extents(context, text.c_str(), &size);
    cairo_font_extents_t font;
    cairo_font_extents(context, &font);
    cairo_move_to(context, std::round(box.centerX() - size.x_advance / 2),
                  std::round(box.centerY() + (font.ascent - font.descent) / 2));
    cairo_show_text(context, text.c_str());
}

unsigned mixed(unsigned from, unsigned to, double share) {
    unsigned result = 0;
    for (const unsigned shift : {16U, 8U, 0U}) {
        const double a = from >> shift & 255;
        const double b = to >> shift & 255;
        result |= static_cast<unsigned>(std::lround(a + (b - a) * share)) << shift;
    }
    return result;
}

double eased(double share) {
    share = std::clamp(share, 0.0, 1.0);
    return share * share * (3 - 2 * share);
}

} // namespace vantro::stage
