#include "pipewire/BufferReader.h"

#include <algorithm>

#include <spa/buffer/meta.h>
#include <spa/param/video/raw.h>

namespace vantro::pipewire {
namespace {

/// The metadata of a kind, where the buffer has enough room for it.
template <typename Meta>
const Meta* find(const spa_buffer& buffer, std::uint32_t kind) {
    return static_cast<const Meta*>(spa_buffer_find_meta_data(&buffer, kind, sizeof(Meta)));
}

Area areaOf(const spa_region& region) {
    return {region.position.x, region.position.y, static_cast<int>(region.size.width),
            static_cast<int>(region.size.height)};
}

std::optional<base::HostTime> readTime(const spa_buffer& buffer) {
    const auto* header = find<spa_meta_header>(buffer, SPA_META_Header);
    if (!header || header->pts <= 0)
        return {};
    return base::HostTime(base::HostDuration(header->pts));
}

std::optional<Layout> bitmapLayout(std::uint32_t format) {
    switch (format) {
    case SPA_VIDEO_FORMAT_BGRA:
    case SPA_VIDEO_FORMAT_BGRx:
        return Layout::bgra;
    case SPA_VIDEO_FORMAT_RGBA:
    case SPA_VIDEO_FORMAT_RGBx:
        return Layout::rgba;
    case SPA_VIDEO_FORMAT_ARGB:
    case SPA_VIDEO_FORMAT_xRGB:
        return Layout::argb;
    case SPA_VIDEO_FORMAT_ABGR:
    case SPA_VIDEO_FORMAT_xBGR:
        return Layout::abgr;
    default:
        return {};
    }
}

/// `room` is all of the metadata, from the pointer's record on.
std::optional<CursorBitmap> readBitmap(std::span<const std::byte> room, std::uint32_t offset) {
    constexpr std::size_t most = 1024;
    if (offset < sizeof(spa_meta_cursor) || offset > room.size() ||
        room.size() - offset < sizeof(spa_meta_bitmap))
        return {};
    const auto rest = room.subspan(offset);
    const auto& bitmap = *reinterpret_cast<const spa_meta_bitmap*>(rest.data());
    if (bitmap.size.width == 0 || bitmap.size.height == 0)
        return CursorBitmap{}; // hidden
    const auto layout = bitmapLayout(bitmap.format);
    const auto row = std::size_t{4} * bitmap.size.width;
    if (!layout || bitmap.size.width > most || bitmap.size.height > most || bitmap.stride < 0 ||
        static_cast<std::size_t>(bitmap.stride) < row || bitmap.offset > rest.size())
        return {};
    const auto needed = static_cast<std::size_t>(bitmap.stride) * (bitmap.size.height - 1) + row;
    if (rest.size() - bitmap.offset < needed)
        return {};
    return CursorBitmap{
        .layout = *layout,
        .size = {static_cast<int>(bitmap.size.width), static_cast<int>(bitmap.size.height)},
        .stride = bitmap.stride,
        .bytes = rest.subspan(bitmap.offset, needed)};
}

std::optional<CursorNews> readCursor(const spa_buffer& buffer) {
    const auto* meta = spa_buffer_find_meta(&buffer, SPA_META_Cursor);
    if (!meta || !meta->data || meta->size < sizeof(spa_meta_cursor))
        return {};
    const auto& cursor = *static_cast<const spa_meta_cursor*>(meta->data);
    CursorNews news{.id = cursor.id,
                    .x = cursor.position.x,
                    .y = cursor.position.y,
                    .hotSpotX = cursor.hotspot.x,
                    .hotSpotY = cursor.hotspot.y,
                    .bitmap = std::nullopt};
    if (cursor.bitmap_offset != 0)
        news.bitmap = readBitmap({static_cast<const std::byte*>(meta->data), meta->size},
                                 cursor.bitmap_offset);
    return news;
}

} // namespace

VideoBuffer BufferReader::read(const spa_buffer& buffer, const VideoFormat& format,
                               base::HostTime arrival) {
    VideoBuffer result{.format = format,
                       .arrival = arrival,
                       .planes = readPlanes(buffer),
                       .time = readTime(buffer),
                       .cursor = readCursor(buffer),
                       .crop = std::nullopt,
                       .damage = readDamage(buffer)};
    if (const auto* crop = find<spa_meta_region>(buffer, SPA_META_VideoCrop))
        if (crop->region.size.width > 0 && crop->region.size.height > 0)
            result.crop = areaOf(crop->region);
    if (const auto* turn = find<spa_meta_videotransform>(buffer, SPA_META_VideoTransform))
        result.transform = turn->transform;
    return result;
}

/// Some senders say that a picture is broken where there is only news of the pointer.
std::span<const Plane> BufferReader::readPlanes(const spa_buffer& buffer) {
    const auto* header = find<spa_meta_header>(buffer, SPA_META_Header);
    if (header && (header->flags & SPA_META_HEADER_FLAG_CORRUPTED) != 0)
        return {};
    const auto count = std::min<std::size_t>(buffer.n_datas, mostPlanes);
    for (std::size_t i = 0; i < count; ++i) {
        const spa_data& data = buffer.datas[i];
        if (!data.data || !data.chunk)
            return {};
        // The sender may write while we read: each value is taken once.
        const auto offset = data.chunk->offset;
        const auto size = data.chunk->size;
        if (size == 0 || offset >= data.maxsize ||
            (data.chunk->flags & SPA_CHUNK_FLAG_CORRUPTED) != 0)
            return {};
        m_planes.at(i) = {.bytes = {static_cast<const std::byte*>(data.data) + offset,
                                    std::min(size, data.maxsize - offset)},
                          .stride = data.chunk->stride};
    }
    return std::span(m_planes).first(count);
}

std::span<const Area> BufferReader::readDamage(const spa_buffer& buffer) {
    const auto* meta = spa_buffer_find_meta(&buffer, SPA_META_VideoDamage);
    if (!meta || !meta->data)
        return {};
    const std::span regions(static_cast<const spa_meta_region*>(meta->data),
                            std::min(meta->size / sizeof(spa_meta_region), mostDamage));
    std::size_t count = 0;
    for (const auto& each : regions) {
        if (each.region.size.width == 0 || each.region.size.height == 0)
            break; // the list's end
        m_damage.at(count++) = areaOf(each.region);
    }
    return std::span(m_damage).first(count);
}

std::int32_t cursorMetaSize(int side) {
    return static_cast<std::int32_t>(sizeof(spa_meta_cursor) + sizeof(spa_meta_bitmap)) +
           side * side * 4;
}

} // namespace vantro::pipewire
