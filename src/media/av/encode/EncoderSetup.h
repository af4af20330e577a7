#pragma once

#include "media/av/Handles.h"
#include "media/values/PixelBuffer.h"
#include "media/values/WriterSettings.h"

#include <cstdint>
#include <memory>
#include <string>

namespace vantro::media::av {

/// A still screen is sharp long before this; below it, text already perfect costs megabits.
inline constexpr int finestQuantizer = 10;

/// What every H.264 encoder is told alike: size, rates, High profile, BT.709. Throws MediaError
/// when libavcodec has no encoder of this name.
CodecHandle makeEncoder(const char* codecName, const VideoSettings& settings);

/// An option of the encoder itself. Throws MediaError when it does not know it.
void setOption(AVCodecContext& codec, const char* name, const std::string& value);

/// Throws MediaError with the reason.
void openEncoder(AVCodecContext& codec);

/// Ticks a second in which frames of this rate last a whole number of ticks.
std::int32_t timescaleFor(double frameRate);

/// Frames from one keyframe to the next where both come at a constant rate.
int framesBetweenKeyframes(const VideoSettings& settings);

/// The i420 picture as a frame to encode, sharing its memory and keeping it alive.
FrameHandle encoderFrame(std::shared_ptr<const PixelBuffer> picture, std::int64_t ticks);

} // namespace vantro::media::av
