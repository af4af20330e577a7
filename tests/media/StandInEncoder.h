#pragma once

#include "media/av/encode/CodecSession.h"
#include "media/av/encode/EncoderSetup.h"

#include <functional>

namespace vantro::test {

inline media::VideoSettings filmSettings() {
    return {.width = 320, .height = 180, .expectedFrameRate = 30, .keyframeInterval = 1};
}

/// Stands in for a hardware encoder, which no test machine is sure to have: libx264 with its own
/// parameter sets, in the pictures' order, holding some pictures back as a device does. `submit`
/// may let it fail; `prepare` changes what it is told.
inline media::av::CodecSession standInEncoder(
    media::av::CodecSession::Submit submit = avcodec_send_frame,
    const std::function<void(AVCodecContext&)>& prepare = [](AVCodecContext&) {}) {
    const auto settings = filmSettings();
    auto codec = media::av::makeEncoder("libx264", settings);
    codec->thread_count = 4;
    codec->max_b_frames = 0;
    codec->gop_size = media::av::framesBetweenKeyframes(settings);
    media::av::setOption(*codec, "preset", "fast"); // references and tools unlike its successor's
    prepare(*codec);
    media::av::openEncoder(*codec);
    return {"stand-in", std::move(codec), std::move(submit)};
}

} // namespace vantro::test
