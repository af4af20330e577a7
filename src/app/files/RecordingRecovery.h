#pragma once

#include "media/MovieRecovery.h"
#include "model/Recording.h"

#include <filesystem>
#include <vector>

namespace vantro::app::files {

/// Makes a finished recording out of what a run of the program left behind: an interrupted movie is
/// made whole in its place, its metadata put together from the journals, "metadata.json" written. A
/// recording that is whole is only read. May be tried again after a failure. Throws VantroError
/// noRecordingData or assetWriterFailed, the latter also while the recording is still under way.
/// Any thread; blocks.
model::Recording recoverRecording(const std::filesystem::path& movie);

/// Of all movies of the recording with this one: written by whatever process, or else interrupted.
media::MovieCondition recordingCondition(const std::filesystem::path& movie);
/// Whether the movie's recording is under way.
bool isBeingRecorded(const std::filesystem::path& movie);

/// The movies of all recordings that a killed program left behind where recordings are made, the
/// oldest first. Any thread.
std::vector<std::filesystem::path> interruptedRecordings();

} // namespace vantro::app::files
