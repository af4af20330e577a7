#include "app/FinishedRecording.h"

#include "app/ProjectPackage.h"
#include "base/OutputFile.h"
#include "capture/CursorJournal.h"
#include "model/Json.h"
#include "model/VantroError.h"

#include <system_error>

namespace vantro {

FinishedRecording finishRecording(const std::filesystem::path& recordingURL,
                                  RecordingMetadata metadata) {
    FinishedRecording finished{.recordingURL = recordingURL,
                               .metadataURL = recordingURL.parent_path() / package::metadataFile,
                               .metadata = std::move(metadata),
                               .editableClickEvents = {},
                               .segments = fullLengthTimeline()};
    try {
        writeWholeFile(finished.metadataURL, encodeMetadata(finished.metadata));
    } catch (const std::runtime_error& error) { // the file, or a number that JSON cannot hold
        throw VantroError(VantroError::Kind::assetWriterFailed, error.what());
    }
    std::error_code ignored;
    std::filesystem::remove(cursorJournalPath(recordingURL), ignored);
    finished.editableClickEvents = finished.metadata.clickEvents;
    normalizeClickEvents(finished.editableClickEvents, finished.metadata.endTime);
    return finished;
}

ProjectData freshProject(const FinishedRecording& finished, std::string name) {
    ProjectData project;
    project.recordingName = std::move(name);
    project.metadata = finished.metadata;
    project.editableClickEvents = finished.editableClickEvents;
    project.segments = finished.segments;
    return project;
}

} // namespace vantro
