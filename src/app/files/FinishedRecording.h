#pragma once

#include "model/ProjectData.h"

#include <filesystem>
#include <string>
#include <vector>

namespace vantro::app::files {

/// What a stopped recording leaves for the editor and for a project.
struct FinishedRecording {
    std::filesystem::path recordingURL;
    std::filesystem::path metadataURL; ///< "metadata.json" beside it
    model::RecordingMetadata metadata;
    std::vector<model::ClickEvent> editableClickEvents; ///< every click, normalised
    std::vector<model::TimelineSegment> segments;       ///< one, of full length
};

/// Writes "metadata.json" beside the movie, which makes the pointer's journal needless, and turns
/// the recorded clicks into editable zooms. Throws VantroError assetWriterFailed when the file
/// cannot be written. Any thread.
FinishedRecording finishRecording(const std::filesystem::path& recordingURL,
                                  model::RecordingMetadata metadata);

/// The project of a recording that nobody has edited yet.
model::ProjectData freshProject(const FinishedRecording& finished, std::string name);

} // namespace vantro::app::files
