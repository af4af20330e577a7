#include "stage/Chart.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <numbers>

namespace vantro::stage {
namespace {

constexpr unsigned background = 0x111827;
constexpr std::array curveColors{0x38bdf8U, 0xa78bfaU, 0xf472b6U};

double curve(int index, double position, double time) {
    const double phase = position * 6 + time * (1.2 + 0.3 * index) + index * 2.1;
    return 0.5 + 0.22 * std::sin(phase) + 0.13 * std::sin(2.3 * phase + time * 0.7);
}

void drawGrid(cairo_t* context, Box plot) {
    setColor(context, 0x374151);
    cairo_set_line_width(context, 1);
    for (int line = 0; line <= 4; ++line) {
        const double y = std::round(plot.y + plot.height * line / 4) + 0.5;
        cairo_move_to(context, plot.x, y);
        cairo_line_to(context, plot.x + plot.width, y);
    }
    cairo_stroke(context);
}

void drawCurve(cairo_t* context, Box plot, int index, double time) {
    constexpr int points = 90;
    for (int point = 0; point <= points; ++point) {
        const double position = static_cast<double>(point) / points;
        const double y = plot.y + plot.height * (1 - curve(index, position, time));
        cairo_line_to(context, plot.x + plot.width * position, y);
    }
    const unsigned color = curveColors.at(static_cast<std::size_t>(index));
    setColor(context, color);
    cairo_set_line_width(context, 2.5);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    cairo_stroke(context);
    const double end = plot.y + plot.height * (1 - curve(index, 1, time));
    fillCircle(context, plot.x + plot.width, end, 9, color, 0.25);
    fillCircle(context, plot.x + plot.width, end, 4.5, color);
}

void drawOrbits(cairo_t* context, double x, double y, double radius, double time) {
    for (std::size_t ring = 0; ring < curveColors.size(); ++ring) {
        const double distance = radius * (0.45 + 0.27 * static_cast<double>(ring));
        cairo_new_sub_path(context);
        cairo_arc(context, x, y, distance, 0, 2 * std::numbers::pi);
        setColor(context, 0x374151);
        cairo_set_line_width(context, 1);
        cairo_stroke(context);
        const double angle =
            time * (1.9 - 0.5 * static_cast<double>(ring)) + static_cast<double>(ring);
        fillCircle(context, x + distance * std::cos(angle), y + distance * std::sin(angle), 6,
                   curveColors.at(ring));
    }
    fillCircle(context, x, y, radius * 0.2 * (1 + 0.1 * std::sin(4 * time)), 0xfbbf24);
}

} // namespace

void drawTitleBar(cairo_t* context, double width, const char* title, bool isDark) {
    fillBox(context, {0, 0, width, titleBarHeight}, 0, isDark ? 0x1f2937 : 0xf1f3f6);
    fillBox(context, {0, titleBarHeight - 1, width, 1}, 0, isDark ? 0x374151 : 0xdfe3e8);
    double x = 24;
    for (const unsigned color : {0xff6058U, 0xffbd2eU, 0x28c840U}) {
        fillCircle(context, x, titleBarHeight / 2, 6.5, color);
        x += 22;
    }
    drawCenteredText(context, {0, 0, width, titleBarHeight}, title,
                     {.size = 14, .rgb = isDark ? 0xe5e7ebU : 0x374151U, .isBold = true});
}

void drawChart(cairo_t* context, Box window, double time) {
    setColor(context, background);
    cairo_paint(context);
    drawTitleBar(context, window.width, "Live signals", true);
    const double orbitRadius = std::min(window.width, window.height) * 0.17;
    const double footer = 2 * orbitRadius + 36;
    const Box plot{28, titleBarHeight + 24, window.width - 56,
                   window.height - titleBarHeight - 24 - footer};
    drawGrid(context, plot);
    for (int index = 0; index < static_cast<int>(curveColors.size()); ++index)
        drawCurve(context, plot, index, time);
    const double middle = window.height - footer / 2;
    drawOrbits(context, window.width - 40 - orbitRadius, middle, orbitRadius, time);
    std::array<char, 32> figure{};
    std::snprintf(figure.data(), figure.size(), "%.2f", 100 * curve(0, 1, time));
    drawText(context, 32, middle - 14, "Throughput", {.size = 14, .rgb = 0x9ca3af});
    drawText(context, 32, middle + 26, figure.data(),
             {.size = 36, .rgb = 0xf9fafb, .isBold = true});
}

} // namespace vantro::stage
