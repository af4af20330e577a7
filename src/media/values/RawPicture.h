#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace vantro::media {

/// How a picture of a camera or a screen lies in memory; by the order of its bytes. An x is a byte
/// of no meaning. The last one is compressed, its size in the data.
enum class RawLayout {
    bgrx,
    bgra,
    rgbx,
    rgba,
    xrgb,
    xbgr,
    argb,
    abgr,
    rgb,
    bgr,
    gray,
    yuyv,
    uyvy,
    yvyu,
    i420,
    yv12,
    nv12,
    nv21,
    mjpeg,
};

/// A picture as a camera has sent it, in somebody else's memory.
struct RawPicture {
    struct Plane {
        std::span<const std::byte> bytes;
        int stride = 0; ///< bytes a row; 0 for none between the rows, or up to 3
    };

    RawLayout layout{};
    int width = 0;
    int height = 0;
    /// The first of them holds all where the others are empty.
    std::array<Plane, 3> planes;
};

} // namespace vantro::media
