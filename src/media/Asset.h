#pragma once

#include "media/values/AssetTrack.h"
#include "media/values/MovieReference.h"

#include <vector>

namespace vantro::media {

/// A media file that has been opened once to read what it holds. Immutable; any thread.
class Asset {
  public:
    /// Throws MediaError when the file cannot be read or holds no media.
    static Asset open(const std::filesystem::path& path, TimeZero zero = TimeZero::firstSample);

    const MovieReference& movie() const { return m_movie; }
    const std::filesystem::path& path() const { return m_movie.path; }
    /// The longest track's end.
    MediaTime duration() const { return m_duration; }
    const std::vector<AssetTrack>& tracks() const { return m_tracks; }
    std::vector<AssetTrack> tracks(MediaType type) const;

  private:
    MovieReference m_movie;
    MediaTime m_duration;
    std::vector<AssetTrack> m_tracks;
};

} // namespace vantro::media
