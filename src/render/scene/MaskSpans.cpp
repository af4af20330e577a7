#include "render/scene/MaskSpans.h"

namespace vantro::render {

PixelSpan touchedPixels(double from, double to, PixelSpan extent) {
    return {clampedIndex(std::floor(from - 0.5), extent.begin, extent.end),
            clampedIndex(std::ceil(to + 0.5), extent.begin, extent.end)};
}

MaskSpans maskSpans(const RoundedRect& rect, int row, PixelSpan columns) {
    const double y = row + 0.5;
    const auto coverage = [&](int column) { return rect.coverage(column + 0.5, y); };

    // How far the outline, widened by the half pixel that the rim reaches out, draws in at this
    // row; walking starts there, since a large corner would make it long.
    const double reach = rect.radius() + 0.5;
    const double above =
        std::max(rect.top() + rect.radius() - y, y - rect.bottom() + rect.radius());
    const double drawnIn =
        above <= 0 ? 0 : reach - std::sqrt(std::max(0.0, reach * reach - above * above));
    MaskSpans spans;
    if (rect.isEmpty() || above >= reach)
        return spans;
    spans.any = touchedPixels(rect.left() + drawnIn, rect.right() - drawnIn, columns);
    while (!spans.any.isEmpty() && coverage(spans.any.begin) <= 0)
        ++spans.any.begin;
    while (!spans.any.isEmpty() && coverage(spans.any.end - 1) <= 0)
        --spans.any.end;
    spans.solid = spans.any;
    while (!spans.solid.isEmpty() && coverage(spans.solid.begin) < 1)
        ++spans.solid.begin;
    while (!spans.solid.isEmpty() && coverage(spans.solid.end - 1) < 1)
        --spans.solid.end;
    return spans;
}

} // namespace vantro::render
