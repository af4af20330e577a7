#pragma once

#include "media/av/Handles.h"
#include "media/av/MovieFile.h"

namespace vantro::media::av {

/// The file's stream of this index and kind, which from now on is the only one that is read. Throws
/// MediaError "No video track found" or "No audio track found".
AVStream& selectStream(const MovieFile& file, int index, AVMediaType type);

/// A decoder for the stream, at work on so many threads of its own. Throws MediaError with the
/// file's path.
CodecHandle openDecoder(const MovieFile& file, const AVStream& stream, unsigned threads);

} // namespace vantro::media::av
