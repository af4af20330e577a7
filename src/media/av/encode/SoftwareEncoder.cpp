#include "media/av/encode/SoftwareEncoder.h"

#include "base/Fatal.h"
#include "media/av/encode/LiveEncoder.h"

#include <algorithm>
#include <thread>

namespace vantro::media::av {
namespace {

constexpr auto codecName = "libx264";
// Pictures are encoded side by side, and each takes memory: 16 MB of 1080p, 60 MB of 4K.
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
// enough: shadows over dark gradients come out no worse without it. Narrower dead zones and a finer
// search for motion keep faint detail. Detecting scene cuts gains 0.02 dB of the demonstration's
// film; a thread that looks ahead takes 13 MB.
constexpr Tuning fastTuning{
    "superfast", 1,
    "aq-mode=0:weightp=0:b-adapt=0:scenecut=0:sync-lookahead=0:partitions=i4x4,i8x8,p8x8:"
    "deadzone-inter=13:deadzone-intra=7:subme=2"};
constexpr Tuning balancedTuning{"veryfast", 3, "aq-mode=0"};
constexpr Tuning smallTuning{"faster", 3,
                             "aq-mode=0:ref=1:rc-lookahead=10:vbv-init=0.5:no-fast-pskip=1"};
// The largest at which no kind of film comes out more than 0.3 dB below fast's.
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

/// At most `bFrames`, and parameter sets of a number.
void applyOptions(AVCodecContext& codec, const VideoSettings& settings, int bFrames,
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
    if (settings.expectsRealTime)
        return openLiveEncoder(settings);
    auto codec = makeEncoder(codecName, settings);
    applyOptions(*codec, settings, manyBFrames);
    openEncoder(*codec);
    return {codecName, std::move(codec)};
}

CodecSession openSucceedingEncoder(const VideoSettings& settings) {
    auto codec = makeEncoder(codecName, settings);
    // The highest there is, for the picture parameter set too; hardware encoders begin at 0.
    applyOptions(*codec, settings, 0, ":sps-id=31");
    openEncoder(*codec);
    return {codecName, std::move(codec)};
}

} // namespace vantro::media::av
