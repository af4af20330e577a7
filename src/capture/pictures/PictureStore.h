#pragma once

#include "capture/pictures/TileMap.h"
#include "media/values/PixelBuffer.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace vantro::capture::pictures {

/// Turns a BGRA picture that changes piece by piece into whole i420 pictures, at a cost that is
/// proportional to what has changed.
///
/// Buffers go round: each remembers where it has fallen behind the source, and only that is
/// converted when its turn comes. A picture handed out stays as it is for as long as somebody holds
/// it; there are as many buffers as are held at once, plus one. One thread; pictures may be let go
/// on any.
class PictureStore {
  public:
    PictureStore(int width, int height) : m_width(width), m_height(height) {}

    /// Tells where the source has changed since the last picture.
    void sourceChanged(const TileMap& where);

    /// The source as it is now. Its first pixel is at `bgra`, its rows are `stride` bytes apart.
    std::shared_ptr<const media::PixelBuffer> picture(const std::uint8_t* bgra,
                                                      std::ptrdiff_t stride);

  private:
    struct Slot;

    Slot& freshestFreeSlot();

    int m_width;
    int m_height;
    std::vector<std::shared_ptr<Slot>> m_slots;
};

} // namespace vantro::capture::pictures
