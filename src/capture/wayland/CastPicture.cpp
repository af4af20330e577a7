#include "capture/wayland/CastPicture.h"

#include "capture/wayland/PixelWalk.h"

#include <algorithm>

namespace vantro::capture::wayland {
namespace {

// A sender's time that is older than this is not the picture's: some repeat the time of a picture
// before, and some have none.
constexpr base::HostDuration oldestTime = std::chrono::milliseconds(100);

} // namespace

bool CastPicture::take(const pipewire::VideoBuffer& buffer) {
    const auto walk = walkThrough(buffer);
    if (!walk)
        return false;
    if (isEmpty() || m_view.width != walk->width || m_view.height != walk->height)
        resize(walk->width, walk->height);
    const auto layout = buffer.format.layout;
    const bool isReady = isBgrxInOrder(*walk, layout);
    for (int y = 0; y < walk->height; ++y) {
        if (!isReady)
            readRow(*walk, layout, y, m_row.data());
        m_copy.collectRow(y, isReady ? walk->first + y * walk->down : m_row.data(), m_changed);
    }
    rememberPlace(buffer);
    const bool isTold = buffer.time && *buffer.time > m_lastTold &&
                        *buffer.time <= buffer.arrival &&
                        buffer.arrival - *buffer.time <= oldestTime;
    m_time = isTold ? *buffer.time : buffer.arrival;
    m_lastTold = buffer.time.value_or(m_lastTold);
    return true;
}

void CastPicture::resize(int width, int height) {
    m_copy = pictures::PictureComparison(width, height);
    m_view = {.pixels = m_copy.pixels(),
              .stride = std::ptrdiff_t{4} * width,
              .width = width,
              .height = height};
    m_changed = pictures::TileMap(width, height);
    m_changed.addAll();
    m_row.resize(std::size_t{4} * width);
}

void CastPicture::rememberPlace(const pipewire::VideoBuffer& buffer) {
    m_transform = buffer.transform;
    const bool isTurned = m_transform % 2 != 0;
    m_part = {static_cast<double>(isTurned ? m_view.height : m_view.width),
              static_cast<double>(isTurned ? m_view.width : m_view.height)};
    m_corner = {};
    if (buffer.crop)
        m_corner = {static_cast<double>(std::max(buffer.crop->x, 0)),
                    static_cast<double>(std::max(buffer.crop->y, 0))};
}

model::Point CastPicture::placeOf(model::Point inBuffer) const {
    const double x = inBuffer.x - m_corner.x;
    const double y = inBuffer.y - m_corner.y;
    const double fromRight = m_part.width - 1 - x;
    const double fromBottom = m_part.height - 1 - y;
    switch (m_transform) { // as `walkThrough` goes
    case 1:
        return {fromBottom, x};
    case 2:
        return {fromRight, fromBottom};
    case 3:
        return {y, fromRight};
    case 4:
        return {fromRight, y};
    case 5:
        return {y, x};
    case 6:
        return {x, fromBottom};
    case 7:
        return {fromBottom, fromRight};
    default:
        return {x, y};
    }
}

} // namespace vantro::capture::wayland
