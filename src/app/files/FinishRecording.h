#pragma once

#include "model/Recording.h"

#include <filesystem>

namespace vantro::app::files {

/// Writes "metadata.json" beside the movie of a recording that has stopped, which makes the
/// pointer's journal needless. Throws VantroError assetWriterFailed when the file cannot be
/// written. Any thread.
model::Recording finishRecording(const std::filesystem::path& movie,
                                 model::RecordingMetadata metadata);

} // namespace vantro::app::files
