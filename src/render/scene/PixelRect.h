#pragma once

namespace vantro::render {

/// A picture's extent in pixels.
struct PixelSize {
    int width = 0;
    int height = 0;
    bool operator==(const PixelSize&) const = default;
};

/// A place on a picture: pixels from its left and upper edges, y downwards. Pixel i spans i to i
/// + 1.
struct PixelPoint {
    double x = 0;
    double y = 0;
    bool operator==(const PixelPoint&) const = default;
};

/// A rectangle on a picture, in the measure of PixelPoint. It may reach beyond the picture.
struct PixelRect {
    double x = 0; ///< left edge
    double y = 0; ///< upper edge
    double width = 0;
    double height = 0;

    static PixelRect whole(PixelSize size) {
        return {0, 0, static_cast<double>(size.width), static_cast<double>(size.height)};
    }
    bool isEmpty() const { return !(width > 0 && height > 0); }
    bool operator==(const PixelRect&) const = default;
};

} // namespace vantro::render
