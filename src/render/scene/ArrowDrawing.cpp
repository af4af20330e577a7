#include "render/scene/ArrowDrawing.h"

#include "model/Geometry.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vantro::render {
namespace {

constexpr int pixelsPerUnit = 12;
constexpr double width = 19;
constexpr double height = 24;
constexpr model::Point tip{3.6, 2.6}; // the hot spot

/// The arrow's outline around its tip, cursor units.
constexpr std::array<model::Point, 7> outline{
    {{0, 0}, {0, 16.2}, {3.75, 12.75}, {6.15, 18.4}, {8.75, 17.3}, {6.35, 11.75}, {11.6, 11.4}}};

constexpr double bodyRounding = 0.3; // softens the body's corners
constexpr double rimWidth = 1.05;
constexpr double shadowReach = 2.4;
constexpr double shadowDrop = 0.7;
constexpr double shadowStrength = 0.3;

double lengthOf(model::Point p) {
    return std::hypot(p.x, p.y);
}

double distanceToEdge(model::Point p, model::Point a, model::Point b) {
    const model::Point along{b.x - a.x, b.y - a.y};
    const model::Point from{p.x - a.x, p.y - a.y};
    const double share = std::clamp(
        (from.x * along.x + from.y * along.y) / (along.x * along.x + along.y * along.y), 0.0, 1.0);
    return lengthOf({from.x - along.x * share, from.y - along.y * share});
}

/// Signed distance from the outline, negative inside.
double distanceToArrow(model::Point p) {
    double nearest = 1e9;
    bool inside = false;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const model::Point a = outline[i];
        const model::Point b = outline[(i + 1) % outline.size()];
        nearest = std::min(nearest, distanceToEdge(p, a, b));
        if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x)
            inside = !inside;
    }
    return inside ? -nearest : nearest;
}

/// How much of a pixel lies within the outline widened by `widening` units.
double coverage(double distance, double widening) {
    return std::clamp(0.5 - (distance - widening) * pixelsPerUnit, 0.0, 1.0);
}

double shadowAt(model::Point p) {
    const double distance = distanceToArrow({p.x, p.y - shadowDrop}) - bodyRounding - rimWidth;
    const double near = std::clamp(1 - (distance + shadowReach / 2) / shadowReach, 0.0, 1.0);
    return shadowStrength * near * near * (3 - 2 * near);
}

} // namespace

CursorImage drawnArrow() {
    const int columns = static_cast<int>(width * pixelsPerUnit);
    const int rows = static_cast<int>(height * pixelsPerUnit);
    auto pixels = media::PixelBuffer::allocate(media::PixelFormat::bgra, columns, rows);
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x) {
            const model::Point p{(x + 0.5) / pixelsPerUnit - tip.x,
                                 (y + 0.5) / pixelsPerUnit - tip.y};
            const double distance = distanceToArrow(p);
            const double body = coverage(distance, bodyRounding);
            const double whole = coverage(distance, bodyRounding + rimWidth);
            const double alpha = whole + (1 - whole) * shadowAt(p);
            const auto white =
                static_cast<std::uint8_t>(std::lround(255 * std::max(0.0, whole - body)));
            std::uint8_t* out = pixels->mutableRow(0, y) + std::ptrdiff_t{x} * 4;
            std::fill_n(out, 3, white);
            out[3] = std::max(white, static_cast<std::uint8_t>(std::lround(255 * alpha)));
        }
    return {std::move(pixels), static_cast<float>(width), static_cast<float>(height),
            static_cast<float>(tip.x), static_cast<float>(tip.y)};
}

} // namespace vantro::render
