#pragma once

#include "media/av/encode/CodecSession.h"
#include "media/av/encode/EncoderSetup.h"

namespace vantro::media::av {

/// libx264, live or for a file as the settings say. Throws MediaError.
CodecSession openSoftwareEncoder(const VideoSettings& settings);

/// libx264 for the rest of a movie that a hardware encoder began: pictures come out in the order
/// in which they go in, and the parameter sets have a number that no hardware encoder gives its
/// own, so that both encoders' sets can stand in the movie's header together. The same settings
/// always give the same parameter sets. Throws MediaError.
CodecSession openSucceedingEncoder(const VideoSettings& settings);

} // namespace vantro::media::av
