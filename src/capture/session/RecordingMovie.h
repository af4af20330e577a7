#pragma once

#include "capture/RecordingTarget.h"
#include "capture/session/RecordingClock.h"
#include "media/AssetWriter.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace vantro::capture {

// The movie that a recording is written into: one track of pictures, and those of its sounds.

/// Writing, with pictures of the target's size. Throws VantroError assetWriterFailed; no file is
/// left then.
std::unique_ptr<media::AssetWriter>
openRecordingMovie(const std::filesystem::path& movie, const RecordingTarget& target, int frameRate,
                   const std::vector<media::AudioSettings>& audio);
/// How long it is when the recording stops then: rounded up to what every movie's time scale can
/// hold, so that nothing of it is longer.
media::MediaTime movieLength(const SharedRecordingClock& clock, base::HostTime stopTime);
/// Its last picture stays until the end. Throws VantroError assetWriterFailed.
void finishRecordingMovie(media::AssetWriter& writer, media::MediaTime length);

} // namespace vantro::capture
