#pragma once

#include "media/av/encode/CodecSession.h"
#include "media/av/encode/EncoderSetup.h"

#include <string>

namespace vantro::media::av {

/// Encodes a few pictures of the movie's size and decodes them again. Says what is wrong with the
/// encoder or with what it made: too few pictures or reordered ones, another profile or size than
/// asked for, missing color tags, wrong colors. Empty when everything is right.
std::string faultInTrial(CodecSession encoder, const VideoSettings& settings);

} // namespace vantro::media::av
