#include "capture/wayland/cast/PixelWalk.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vantro::capture::wayland {
namespace {

using pipewire::Area;
using pipewire::Layout;

/// Where the colors of a pixel lie.
struct PixelBytes {
    Layout layout{};
    int size = 4;
    int blue = 0;
    int green = 0;
    int red = 0;
};

// The first ones need no conversion; what is opaque comes before what may not be.
constexpr std::array<PixelBytes, 10> knownLayouts{{
    {Layout::bgrx, 4, 0, 1, 2},
    {Layout::bgra, 4, 0, 1, 2},
    {Layout::rgbx, 4, 2, 1, 0},
    {Layout::rgba, 4, 2, 1, 0},
    {Layout::xrgb, 4, 3, 2, 1},
    {Layout::xbgr, 4, 1, 2, 3},
    {Layout::argb, 4, 3, 2, 1},
    {Layout::abgr, 4, 1, 2, 3},
    {Layout::bgr, 3, 0, 1, 2},
    {Layout::rgb, 3, 2, 1, 0},
}};

const PixelBytes* bytesOf(Layout layout) {
    const auto* found = std::ranges::find(knownLayouts, layout, &PixelBytes::layout);
    return found == knownLayouts.end() ? nullptr : found;
}

/// The part of the buffer that is to be seen.
Area visibleArea(const pipewire::VideoBuffer& buffer) {
    const auto [width, height] = buffer.format.size;
    if (!buffer.crop)
        return {0, 0, width, height};
    const auto clip = [](int from, int length, int limit) {
        const auto end = std::clamp<std::int64_t>(std::int64_t{from} + length, 0, limit);
        const auto start = std::clamp(from, 0, limit);
        return std::pair(start, static_cast<int>(end) - start);
    };
    const auto [x, visibleWidth] = clip(buffer.crop->x, buffer.crop->width, width);
    const auto [y, visibleHeight] = clip(buffer.crop->y, buffer.crop->height, height);
    return {x, y, visibleWidth, visibleHeight};
}

} // namespace

std::optional<PixelWalk> walkThrough(const pipewire::VideoBuffer& buffer) {
    const PixelBytes* pixel = bytesOf(buffer.format.layout);
    if (buffer.planes.empty() || pixel == nullptr)
        return {};
    const auto [width, height] = buffer.format.size;
    const auto& plane = buffer.planes.front();
    const std::ptrdiff_t row = std::ptrdiff_t{width} * pixel->size;
    // Whoever does not say how far rows lie apart puts them at multiples of four bytes.
    const std::ptrdiff_t stride = plane.stride != 0 ? plane.stride : (row + 3) / 4 * 4;
    if (stride < row || std::ssize(plane.bytes) < stride * (height - 1) + row)
        return {};
    const Area area = visibleArea(buffer);
    if (area.width <= 0 || area.height <= 0)
        return {};
    const std::ptrdiff_t across = pixel->size;
    const auto* base = reinterpret_cast<const std::uint8_t*>(plane.bytes.data());
    const auto* first = base + area.y * stride + area.x * across;
    const std::ptrdiff_t lastColumn = (area.width - 1) * across;
    const std::ptrdiff_t lastRow = (area.height - 1) * stride;
    // By how the picture was turned counterclockwise, and before that mirrored, to become what is
    // in the buffer.
    switch (buffer.transform) {
    case 1: // 90 degrees
        return PixelWalk{first + lastRow, -stride, across, area.height, area.width};
    case 2:
        return PixelWalk{first + lastRow + lastColumn, -across, -stride, area.width, area.height};
    case 3:
        return PixelWalk{first + lastColumn, stride, -across, area.height, area.width};
    case 4: // mirrored
        return PixelWalk{first + lastColumn, -across, stride, area.width, area.height};
    case 5: // mirrored, then 90 degrees
        return PixelWalk{first, stride, across, area.height, area.width};
    case 6:
        return PixelWalk{first + lastRow, across, -stride, area.width, area.height};
    case 7:
        return PixelWalk{first + lastRow + lastColumn, -stride, -across, area.height, area.width};
    default:
        return PixelWalk{first, across, stride, area.width, area.height};
    }
}

PixelWalk partOf(const PixelWalk& walk, media::color::PixelRect part) {
    return {walk.first + part.y * walk.down + part.x * walk.right, walk.right, walk.down,
            part.width, part.height};
}

std::vector<Layout> castLayouts() {
    std::vector<Layout> layouts;
    layouts.reserve(knownLayouts.size());
    for (const auto& each : knownLayouts)
        layouts.push_back(each.layout);
    return layouts;
}

bool isBgrxInOrder(const PixelWalk& walk, Layout layout) {
    return walk.right == 4 && (layout == Layout::bgrx || layout == Layout::bgra);
}

void readRow(const PixelWalk& walk, Layout layout, int y, std::uint8_t* bgrx) {
    const PixelBytes pixel = *bytesOf(layout);
    const auto* from = walk.first + y * walk.down;
    for (int x = 0; x < walk.width; ++x, from += walk.right, bgrx += 4) {
        bgrx[0] = from[pixel.blue];
        bgrx[1] = from[pixel.green];
        bgrx[2] = from[pixel.red];
        bgrx[3] = 255;
    }
}

} // namespace vantro::capture::wayland
