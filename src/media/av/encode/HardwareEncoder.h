#pragma once

#include "media/av/encode/CodecSession.h"
#include "media/av/encode/EncoderSetup.h"
#include "media/values/VideoEncoderChoice.h"

namespace vantro::media::av {

/// Why this machine cannot have such an encoder, by a look at its devices that costs next to
/// nothing; empty where one is worth a try.
std::string missingDevice(VideoEncoderChoice hardware);

/// Opens nvenc, qsv or vaapi on the first device that has it. Pictures come out in the order in
/// which they go in. Throws MediaError with the reason.
CodecSession openHardwareEncoder(VideoEncoderChoice hardware, const VideoSettings& settings);

} // namespace vantro::media::av
