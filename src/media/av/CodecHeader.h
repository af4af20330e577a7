#pragma once

#include "media/av/Handles.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vantro::media::av {

/// What a decoder must know before the first packet: for H.264 its parameter sets.
std::vector<std::uint8_t> headerOf(const AVCodecContext& codec);
/// In the place of the one it has.
void setHeader(AVCodecContext& codec, std::span<const std::uint8_t> header);

} // namespace vantro::media::av
