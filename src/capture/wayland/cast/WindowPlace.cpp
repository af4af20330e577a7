#include "capture/wayland/cast/WindowPlace.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace vantro::capture::wayland {
namespace {

using media::color::PixelRect;
using pictures::PictureView;

// Patches that are compared in each direction, the outermost at the edges: a menu covers some.
constexpr int patches = 5;
constexpr int patchWidth = 16;
constexpr int patchHeight = 8;
constexpr double leastEqual = 0.6; // of the patches
// A menu fills a part of what hangs over; a window that has been enlarged fills all of it.
constexpr double leastEmpty = 0.1;
constexpr int stepOfLook = 4; // pixels

const std::uint8_t* pixelAt(const PictureView& picture, int x, int y) {
    return picture.pixels + y * picture.stride + std::ptrdiff_t{4} * x;
}

bool isSameColor(const std::uint8_t* a, const std::uint8_t* b) {
    return std::memcmp(a, b, 3) == 0;
}

bool isPatchEqual(const PictureView& window, int x, int y, const PictureView& larger,
                  PixelRect place) {
    for (int row = y; row < std::min(y + patchHeight, window.height); ++row)
        for (int column = x; column < std::min(x + patchWidth, window.width); ++column)
            if (!isSameColor(pixelAt(window, column, row),
                             pixelAt(larger, place.x + column, place.y + row)))
                return false;
    return true;
}

double equalShare(const PictureView& window, const PictureView& larger, PixelRect place) {
    const auto start = [](int index, int length, int patch) {
        return std::max(length - patch, 0) * index / (patches - 1);
    };
    int equal = 0;
    for (int row = 0; row < patches; ++row)
        for (int column = 0; column < patches; ++column)
            equal += isPatchEqual(window, start(column, window.width, patchWidth),
                                  start(row, window.height, patchHeight), larger, place)
                         ? 1
                         : 0;
    return static_cast<double>(equal) / (patches * patches);
}

double emptyShareBeside(const PictureView& larger, PixelRect place, bool hasAlpha) {
    int all = 0;
    int empty = 0;
    for (int y = 0; y < larger.height; y += stepOfLook)
        for (int x = 0; x < larger.width; x += stepOfLook) {
            if (x >= place.x && x < place.x + place.width && y >= place.y &&
                y < place.y + place.height)
                continue;
            const auto* pixel = pixelAt(larger, x, y);
            ++all;
            empty += (hasAlpha ? pixel[3] == 0 : pixel[0] + pixel[1] + pixel[2] == 0) ? 1 : 0;
        }
    return all == 0 ? 0 : static_cast<double>(empty) / all;
}

} // namespace

std::optional<PixelRect> placeOfWindow(const PictureView& window, const PictureView& larger,
                                       bool hasAlpha) {
    const int right = larger.width - window.width;
    const int down = larger.height - window.height;
    if (right < 0 || down < 0 || right + down == 0)
        return {};
    std::optional<PixelRect> best;
    double mostEqual = leastEqual;
    for (const int y : {0, down})
        for (const int x : {0, right}) {
            const PixelRect place{.x = x, .y = y, .width = window.width, .height = window.height};
            const double equal = equalShare(window, larger, place);
            if (equal < mostEqual || (best && equal == mostEqual) ||
                emptyShareBeside(larger, place, hasAlpha) < leastEmpty)
                continue;
            mostEqual = equal;
            best = place;
        }
    return best;
}

} // namespace vantro::capture::wayland
