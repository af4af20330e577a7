#include "media/strips/ThumbnailCache.h"

namespace vantro::media::strips {
namespace {

constexpr std::size_t overhead = 256; // of an entry and its buffer, besides the pixels

std::size_t bytesOf(const Thumbnail& thumbnail) {
    if (!thumbnail.pixels)
        return overhead;
    const auto stride = static_cast<std::size_t>(thumbnail.pixels->stride(0));
    return overhead + stride * static_cast<std::size_t>(thumbnail.pixels->height());
}

} // namespace

void ThumbnailCache::add(const Thumbnail& thumbnail) {
    auto& entry = m_entries[thumbnail.tick];
    if (entry.lastUse > 0)
        m_bytes -= bytesOf(entry.thumbnail);
    entry = {thumbnail, ++m_uses};
    m_bytes += bytesOf(thumbnail);
    makeRoom();
}

void ThumbnailCache::makeRoom() {
    while (m_bytes > m_mostBytes && m_entries.size() > 1) {
        const auto oldest = std::ranges::min_element(
            m_entries, {}, [](const auto& entry) { return entry.second.lastUse; });
        m_bytes -= bytesOf(oldest->second.thumbnail);
        m_entries.erase(oldest);
    }
}

bool ThumbnailCache::has(std::int64_t tick, std::int64_t tolerance) const {
    const auto found = m_entries.find(tick);
    return found != m_entries.end() &&
           (!found->second.thumbnail.pixels || tick - found->second.thumbnail.shown <= tolerance);
}

std::shared_ptr<const PixelBuffer> ThumbnailCache::nearest(std::int64_t tick, std::int64_t first,
                                                           std::int64_t end) {
    Entry* best = nullptr;
    for (auto each = m_entries.lower_bound(first); each != m_entries.end() && each->first < end;
         ++each) {
        auto& entry = each->second;
        const auto distance = [tick](const Entry& of) {
            return std::abs(of.thumbnail.tick - tick);
        };
        if (entry.thumbnail.pixels && (best == nullptr || distance(entry) < distance(*best)))
            best = &entry;
    }
    if (best == nullptr)
        return nullptr;
    best->lastUse = ++m_uses;
    return best->thumbnail.pixels;
}

} // namespace vantro::media::strips
