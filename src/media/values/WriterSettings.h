#pragma once

#include "media/values/VideoEncoderChoice.h"
#include "media/values/VideoQuality.h"

#include <cstdint>

namespace vantro::media {

enum class FileType { quickTimeMovie, mpeg4 };

/// H.264 High, 8-bit 4:2:0, tagged BT.709 limited range. Sizes are even.
struct VideoSettings {
    int width = 0;
    int height = 0;
    std::int64_t averageBitRate = 20'000'000; ///< bit/s
    double expectedFrameRate = 60;
    /// Longest distance between keyframes, seconds: shorter seeks faster, longer packs better.
    double keyframeInterval = 2.0;
    /// A live source: the encoder favors speed and never holds frames back, and `append` refuses
    /// instead of waiting. Otherwise it favors quality and `append` waits for room.
    bool expectsRealTime = false;
    /// A live source is encoded by libx264 whatever this says: its frames cannot wait for a trial
    /// or for a device that somebody else keeps busy.
    VideoEncoderChoice encoder = VideoEncoderChoice::libx264;
    /// Of what is not live.
    VideoQuality quality = VideoQuality::fast;
};

/// AAC, 48 kHz, 2 channels.
struct AudioSettings {
    std::int64_t averageBitRate = 128'000; ///< bit/s
    /// A live source: `appendAudio` refuses instead of waiting.
    bool expectsRealTime = false;
};

} // namespace vantro::media
