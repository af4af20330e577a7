#include "media/av/SoftwareEncoder.h"

#include <algorithm>
#include <thread>

namespace vantro::media::av {
namespace {

constexpr auto codecName = "libx264";
// Slices of one live picture are encoded side by side; more of them cost compression for nothing.
constexpr unsigned mostSliceThreads = 4;
// Offline, pictures are encoded side by side, and each takes memory: 4K pictures about 40 MB.
constexpr unsigned mostFrameThreads = 12;
constexpr int mostBFrames = 3;

unsigned cores() {
    return std::max(1U, std::thread::hardware_concurrency());
}

void applyRealTimeOptions(AVCodecContext& codec) {
    codec.thread_count = static_cast<int>(std::min(cores(), mostSliceThreads));
    codec.max_b_frames = 0;
    setOption(codec, "preset", "ultrafast");
    setOption(codec, "tune", "zerolatency");
    setOption(codec, "forced-idr", "1");
    // The preset leaves out what makes the High profile; keyframes come by time, not by count.
    setOption(codec, "x264-params", "cabac=1:8x8dct=1:keyint=infinite");
}

void applyOfflineOptions(AVCodecContext& codec, const VideoSettings& settings) {
    codec.thread_count = static_cast<int>(std::min(cores() + cores() / 2, mostFrameThreads));
    codec.max_b_frames = mostBFrames;
    codec.gop_size = framesBetweenKeyframes(settings);
    setOption(codec, "preset", "veryfast");
}

} // namespace

CodecSession openSoftwareEncoder(const VideoSettings& settings) {
    auto codec = makeEncoder(codecName, settings);
    if (settings.expectsRealTime)
        applyRealTimeOptions(*codec);
    else
        applyOfflineOptions(*codec, settings);
    openEncoder(*codec);
    return {codecName, std::move(codec)};
}

CodecSession openSucceedingEncoder(const VideoSettings& settings) {
    auto codec = makeEncoder(codecName, settings);
    applyOfflineOptions(*codec, settings);
    codec->max_b_frames = 0;
    // The highest there is, for the picture parameter set too; hardware encoders begin at 0.
    setOption(*codec, "x264-params", "sps-id=31");
    openEncoder(*codec);
    return {codecName, std::move(codec)};
}

} // namespace vantro::media::av
