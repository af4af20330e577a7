#pragma once

#include "render/scene/PixelSpan.h"
#include "render/scene/RoundedRect.h"

namespace vantro::render {

/// Which pixels of one row a rounded rectangle touches (`any`), and which of them lie inside wholly
/// (`solid`, within `any`; the rest is its softened rim).
struct MaskSpans {
    PixelSpan any;
    PixelSpan solid;
};
/// `row` counts from the top; columns are clipped to `columns`.
MaskSpans maskSpans(const RoundedRect& rect, int row, PixelSpan columns);

/// The rows or columns that a softened rectangle may touch, clipped to `extent`.
PixelSpan touchedPixels(double from, double to, PixelSpan extent);

} // namespace vantro::render
