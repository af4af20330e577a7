#pragma once

#include "pipewire/VideoBuffer.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include <spa/buffer/buffer.h>

namespace vantro::pipewire {

/// Makes plain records of a stream's buffers. What a sender claims is checked against the memory
/// that there is.
class BufferReader {
  public:
    /// Valid until the next call, while the buffer is not given back.
    VideoBuffer read(const spa_buffer& buffer, const VideoFormat& format, base::HostTime arrival);

  private:
    static constexpr std::size_t mostPlanes = 4;
    static constexpr std::size_t mostDamage = 16;

    std::span<const Plane> readPlanes(const spa_buffer& buffer);
    std::span<const Area> readDamage(const spa_buffer& buffer);

    std::array<Plane, mostPlanes> m_planes{};
    std::array<Area, mostDamage> m_damage{};
};

/// The size of a pointer's metadata whose picture is a square of so many pixels.
std::int32_t cursorMetaSize(int side);

} // namespace vantro::pipewire
