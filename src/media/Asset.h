#pragma once

#include "media/values/AssetTrack.h"

#include <filesystem>
#include <vector>

namespace vantro::media {

/// A media file that has been opened once to read what it holds. Immutable; any thread.
class Asset {
  public:
    /// Throws MediaError when the file cannot be read or holds no media.
    static Asset open(const std::filesystem::path& path);

    const std::filesystem::path& path() const { return m_path; }
    /// The longest track's end.
    MediaTime duration() const { return m_duration; }
    const std::vector<AssetTrack>& tracks() const { return m_tracks; }
    std::vector<AssetTrack> tracks(MediaType type) const;

  private:
    std::filesystem::path m_path;
    MediaTime m_duration;
    std::vector<AssetTrack> m_tracks;
};

} // namespace vantro::media
