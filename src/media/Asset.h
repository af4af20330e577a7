#pragma once

#include "media/values/MediaTime.h"
#include "model/Geometry.h"

#include <filesystem>
#include <string>
#include <vector>

namespace vantro::media {

enum class MediaType { video, audio };

/// One track of a media file. A plain record, safe to copy and keep.
struct AssetTrack {
    int id = 0; ///< position in the file's list of streams
    MediaType type = MediaType::video;
    std::string codec;           ///< the codec's short name, for example h264
    MediaTimeRange timeRange;    ///< where the track stands on the file's time line
    model::Size naturalSize;     ///< video: displayed pixels, after rotation and sample aspect
    double nominalFrameRate = 0; ///< video: average frames per second, 0 when unknown
    int sampleRate = 0;          ///< audio
    int channelCount = 0;        ///< audio
};

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
