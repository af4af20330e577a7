#pragma once

#include "media/av/CodecSession.h"
#include "media/av/EncoderSetup.h"
#include "media/values/VideoEncoderChoice.h"

#include <string>

namespace vantro::media::av {

/// Opens the encoder that the settings ask for. The automatic choice takes the first hardware
/// encoder that passes a trial with the movie's size, else libx264, and leaves a line in the log;
/// a live source always gets libx264. Throws MediaError with the reason, for `automatic` only when
/// libx264 cannot be had either. Any thread.
CodecSession openSelectedEncoder(const VideoSettings& settings);

/// What keeps this machine from encoding such pictures with nvenc, qsv or vaapi; empty where
/// nothing does. Tried once for each size and rate while the program runs. Any thread.
std::string hardwareProblem(VideoEncoderChoice hardware, const VideoSettings& settings);

} // namespace vantro::media::av
