#include "capture/wayland/cast/CastPicture.h"

#include "capture/wayland/cast/WindowPlace.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vantro::capture::wayland {
namespace {

// A sender's time that is older than this is not the picture's: some repeat the time of a picture
// before, and some have none.
constexpr base::HostDuration oldestTime = std::chrono::milliseconds(100);

} // namespace

bool CastPicture::take(const pipewire::VideoBuffer& buffer) {
    auto walk = walkThrough(buffer);
    if (!walk)
        return false;
    rememberPlace(buffer, walk->width, walk->height);
    if (m_isWindow)
        followWindow(*walk, buffer.format.layout);
    if (m_crop)
        walk = partOf(*walk, cropIn(*m_crop, walk->width, walk->height));
    if (isEmpty() || m_view.width != walk->width || m_view.height != walk->height)
        resize(walk->width, walk->height);
    const auto layout = buffer.format.layout;
    const bool isReady = isBgrxInOrder(*walk, layout);
    for (int y = 0; y < walk->height; ++y) {
        if (!isReady)
            readRow(*walk, layout, y, m_row.data());
        m_copy.collectRow(y, isReady ? walk->first + y * walk->down : m_row.data(), m_changed);
    }
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

void CastPicture::followWindow(const PixelWalk& walk, pipewire::Layout layout) {
    const auto isOfSize = [&](int width, int height) {
        return walk.width == width && walk.height == height;
    };
    if (isEmpty() || (m_crop && isOfSize(m_crop->width, m_crop->height)))
        return;
    m_crop.reset();
    m_cropCorner = {};
    if (isOfSize(m_view.width, m_view.height))
        return;
    const auto stride = std::ptrdiff_t{4} * walk.width;
    const bool isReady = isBgrxInOrder(walk, layout);
    std::vector<std::uint8_t> upright(isReady ? 0 : stride * walk.height);
    for (int y = 0; !isReady && y < walk.height; ++y)
        readRow(walk, layout, y, upright.data() + y * stride);
    const pictures::PictureView larger{.pixels = isReady ? walk.first : upright.data(),
                                       .stride = isReady ? walk.down : stride,
                                       .width = walk.width,
                                       .height = walk.height};
    const bool hasAlpha = isReady && layout == pipewire::Layout::bgra;
    if (const auto place = placeOfWindow(m_view, larger, hasAlpha))
        m_crop = PictureCrop{.part = *place, .width = walk.width, .height = walk.height};
}

void CastPicture::crop(const PictureCrop& crop) {
    m_crop = crop;
    if (isEmpty())
        return;
    const auto whole = std::exchange(m_copy, pictures::PictureComparison(1, 1));
    const pictures::PictureView before = m_view;
    const auto part = cropIn(crop, before.width, before.height);
    resize(part.width, part.height);
    m_copy.collect(before.pixels + part.y * before.stride + std::ptrdiff_t{4} * part.x,
                   before.stride, m_changed);
}

/// The part of a whole picture of that size that is to be seen: at least a pixel.
media::color::PixelRect CastPicture::cropIn(const PictureCrop& crop, int width, int height) {
    const auto scaled = [](int value, int from, int to) {
        return static_cast<int>(std::int64_t{value} * to / std::max(from, 1));
    };
    media::color::PixelRect part = crop.part;
    if (width != crop.width || height != crop.height)
        part = {.x = scaled(part.x, crop.width, width),
                .y = scaled(part.y, crop.height, height),
                .width = scaled(part.width, crop.width, width),
                .height = scaled(part.height, crop.height, height)};
    part.x = std::clamp(part.x, 0, width - 1);
    part.y = std::clamp(part.y, 0, height - 1);
    part.width = std::clamp(part.width, 1, width - part.x);
    part.height = std::clamp(part.height, 1, height - part.y);
    m_cropCorner = {static_cast<double>(part.x), static_cast<double>(part.y)};
    return part;
}

void CastPicture::rememberPlace(const pipewire::VideoBuffer& buffer, int width, int height) {
    m_transform = buffer.transform;
    const bool isTurned = m_transform % 2 != 0;
    m_part = {static_cast<double>(isTurned ? height : width),
              static_cast<double>(isTurned ? width : height)};
    m_corner = {};
    if (buffer.crop)
        m_corner = {static_cast<double>(std::max(buffer.crop->x, 0)),
                    static_cast<double>(std::max(buffer.crop->y, 0))};
}

model::Point CastPicture::uprightPlaceOf(model::Point inBuffer) const {
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

std::shared_ptr<const media::PixelBuffer> CastPicture::copy() const {
    if (isEmpty())
        return nullptr;
    auto copy = media::PixelBuffer::allocate(media::PixelFormat::bgra, m_view.width, m_view.height);
    for (int y = 0; y < m_view.height; ++y)
        std::memcpy(copy->mutableRow(0, y), m_view.pixels + y * m_view.stride,
                    std::size_t{4} * m_view.width);
    return copy;
}

} // namespace vantro::capture::wayland
