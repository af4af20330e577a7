#include "media/av/SoftwareEncoder.h"

#include "base/Fatal.h"

#include <algorithm>
#include <thread>

namespace vantro::media::av {
namespace {

constexpr auto codecName = "libx264";
// Slices of one live picture are encoded side by side; more of them cost compression for nothing.
constexpr unsigned mostSliceThreads = 4;
// Offline, pictures are encoded side by side, and each takes memory: 16 MB of 1080p, 60 MB of 4K.
constexpr unsigned mostFrameThreads = 8;

/// What libx264 is told for a film, beside the rate.
struct Tuning {
    const char* preset;
    int bFrames;
    const char* parameters;
};

// Chosen by bench/encoder.sh, which compares films with the composed pictures: the fastest whose
// luma is within 0.3 dB of veryfast with three B-frames at the same rate, for each kind of film.
// Adaptive quantization takes bits from text to give them to soft shades, which at these rates have
// enough: shadows over dark gradients come out no worse without it. Narrower dead zones and a
// search before each skip keep faint detail. Detecting scene cuts takes a tenth of the time for
// 0.02 dB of the demonstration's film; a thread that looks ahead takes 13 MB.
constexpr Tuning fastTuning{
    "superfast", 1,
    "aq-mode=0:weightp=0:b-adapt=0:scenecut=0:sync-lookahead=0:partitions=i4x4,i8x8,p8x8:"
    "no-fast-pskip=1:deadzone-inter=16:deadzone-intra=8:subme=2"};
constexpr Tuning balancedTuning{"veryfast", 3, "aq-mode=0"};
constexpr Tuning smallTuning{"faster", 3,
                             "aq-mode=0:ref=1:rc-lookahead=10:vbv-init=0.5:no-fast-pskip=1"};
// Within 0.3 dB of fast for each kind of film.
constexpr auto smallRateFactor = "8";

Tuning tuningFor(VideoQuality quality) {
    switch (quality) {
    case VideoQuality::fast:
        return fastTuning;
    case VideoQuality::balanced:
        return balancedTuning;
    case VideoQuality::small:
        return smallTuning;
    }
    base::fatal("no such quality");
}

unsigned cores() {
    return std::max(1U, std::thread::hardware_concurrency());
}

void applyRealTimeOptions(AVCodecContext& codec) {
    codec.thread_count = static_cast<int>(std::min(cores(), mostSliceThreads));
    codec.max_b_frames = 0;
    setOption(codec, "preset", "ultrafast");
    setOption(codec, "tune", "zerolatency");
    setOption(codec, "forced-idr", "1");
    // The preset leaves out what makes the High profile, of which 8x8 transforms cost least:
    // arithmetic coding would save some bytes for a third more work, and double that of each
    // decoding, of which an edit needs many. Keyframes come by time, not by count.
    setOption(codec, "x264-params", "8x8dct=1:keyint=infinite");
}

/// At most `bFrames`, and parameter sets of a number.
void applyOfflineOptions(AVCodecContext& codec, const VideoSettings& settings, int bFrames,
                         const std::string& numbering = {}) {
    const auto tuning = tuningFor(settings.quality);
    // Each waits for rows of the pictures before: one more than there are cores keeps all busy.
    codec.thread_count = static_cast<int>(std::min(cores() + 1, mostFrameThreads));
    codec.max_b_frames = std::min(bFrames, tuning.bFrames);
    codec.gop_size = framesBetweenKeyframes(settings);
    setOption(codec, "preset", tuning.preset);
    setOption(codec, "x264-params", tuning.parameters + numbering);
    if (settings.quality != VideoQuality::small)
        return;
    setOption(codec, "crf", smallRateFactor);
    codec.rc_max_rate = codec.bit_rate;
    codec.rc_buffer_size = static_cast<int>(codec.bit_rate); // a second
    codec.bit_rate = 0;
}

} // namespace

CodecSession openSoftwareEncoder(const VideoSettings& settings) {
    constexpr int manyBFrames = 16;
    auto codec = makeEncoder(codecName, settings);
    if (settings.expectsRealTime)
        applyRealTimeOptions(*codec);
    else
        applyOfflineOptions(*codec, settings, manyBFrames);
    openEncoder(*codec);
    return {codecName, std::move(codec)};
}

CodecSession openSucceedingEncoder(const VideoSettings& settings) {
    auto codec = makeEncoder(codecName, settings);
    // The highest there is, for the picture parameter set too; hardware encoders begin at 0.
    applyOfflineOptions(*codec, settings, 0, ":sps-id=31");
    openEncoder(*codec);
    return {codecName, std::move(codec)};
}

} // namespace vantro::media::av
