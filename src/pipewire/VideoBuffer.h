#pragma once

#include "base/HostClock.h"
#include "pipewire/VideoFormat.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace vantro::pipewire {

/// In pixels of the buffer.
struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const Area&) const = default;
};

/// A part of a buffer's memory, with as many bytes as there are for certain.
struct Plane {
    std::span<const std::byte> bytes;
    int stride = 0; ///< bytes a row, as the sender says; 0: it does not say
};

/// A pointer's picture.
struct CursorBitmap {
    Layout layout{};
    Size size;
    int stride = 0;
    std::span<const std::byte> bytes;
};

/// Where a pointer is.
struct CursorNews {
    std::uint32_t id = 0; ///< 0: it is not in the picture
    int x = 0;
    int y = 0;
    int hotSpotX = 0;
    int hotSpotY = 0;
    std::optional<CursorBitmap> bitmap; ///< when it has changed; of no size: it is hidden
};

/// What has arrived. All of it is the stream's, for the time of the call.
struct VideoBuffer {
    const VideoFormat& format;
    base::HostTime arrival;
    /// Empty when there is no new picture, or a broken one.
    std::span<const Plane> planes;
    std::optional<base::HostTime> time; ///< the sender's, of its clock; missing or 0 of some
    std::optional<CursorNews> cursor;
    std::optional<Area> crop;
    std::span<const Area> damage;
    std::uint32_t transform = 0; ///< spa_meta_videotransform's
};

} // namespace vantro::pipewire
