#pragma once

#include "media/values/MediaTime.h"
#include "model/Geometry.h"

#include <string>

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

} // namespace vantro::media
