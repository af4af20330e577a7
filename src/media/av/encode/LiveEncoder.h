#pragma once

#include "media/av/encode/CodecSession.h"
#include "media/values/WriterSettings.h"

namespace vantro::media::av {

/// libx264 for a live recording: each picture given is a packet at once. Throws MediaError.
///
/// Goes to the library itself, past libavcodec: only there can each picture be given a quantizer.
/// The library's own rate control searches each picture for motion once more, at half its size,
/// which is a quarter of all its work.
CodecSession openLiveEncoder(const VideoSettings& settings);

} // namespace vantro::media::av
