#pragma once

#include "model/RecordingMetadata.h"
#include "model/TimelineSegment.h"

#include <filesystem>
#include <vector>

namespace vantro {

/// What a stopped recording leaves for the editor and for a project.
struct FinishedRecording {
    std::filesystem::path recordingURL;
    std::filesystem::path metadataURL; ///< "metadata.json" beside it
    RecordingMetadata metadata;
    std::vector<ClickEvent> editableClickEvents; ///< every click, normalised
    std::vector<TimelineSegment> segments;       ///< one, of full length
};

/// Writes "metadata.json" beside the movie and turns the recorded clicks into editable zooms.
/// Throws VantroError assetWriterFailed when the file cannot be written. Any thread.
FinishedRecording finishRecording(const std::filesystem::path& recordingURL,
                                  RecordingMetadata metadata);

} // namespace vantro
