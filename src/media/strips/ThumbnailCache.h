#pragma once

#include "media/strips/Strip.h"

#include <map>

namespace vantro::media::strips {

/// The thumbnails of one movie. Those that were not asked for the longest go once all take more
/// than a bound. One thread.
class ThumbnailCache {
  public:
    static constexpr std::size_t usualBytes = 48'000'000;

    explicit ThumbnailCache(std::size_t most = usualBytes) : m_mostBytes(most) {}

    void add(const Thumbnail& thumbnail);
    /// Whether there is one of that time, or none to be had, whose picture is at most `tolerance`
    /// ticks earlier.
    bool has(std::int64_t tick, std::int64_t tolerance) const;
    /// The picture nearest to a time, of those between `first` and `end`; null without.
    std::shared_ptr<const PixelBuffer> nearest(std::int64_t tick, std::int64_t first,
                                               std::int64_t end);
    std::size_t bytes() const { return m_bytes; }
    std::size_t count() const { return m_entries.size(); }

  private:
    struct Entry {
        Thumbnail thumbnail;
        std::uint64_t lastUse = 0;
    };

    void makeRoom();

    std::size_t m_mostBytes;
    std::size_t m_bytes = 0;
    std::uint64_t m_uses = 0;
    std::map<std::int64_t, Entry> m_entries; ///< by tick
};

} // namespace vantro::media::strips
