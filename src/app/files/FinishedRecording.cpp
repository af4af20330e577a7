#include "app/files/FinishedRecording.h"

#include "app/files/ProjectPackage.h"
#include "base/OutputFile.h"
#include "capture/CursorJournal.h"
#include "model/Json.h"
#include "model/VantroError.h"

#include <system_error>

namespace vantro::app::files {

FinishedRecording finishRecording(const std::filesystem::path& recordingURL,
                                  model::RecordingMetadata metadata) {
    FinishedRecording finished{.recordingURL = recordingURL,
                               .metadataURL = recordingURL.parent_path() / package::metadataFile,
                               .metadata = std::move(metadata),
                               .editableClickEvents = {},
                               .segments = model::fullLengthTimeline()};
    try {
        base::writeWholeFile(finished.metadataURL, model::encodeMetadata(finished.metadata));
    } catch (const std::runtime_error& error) { // the file, or a number that JSON cannot hold
        throw model::VantroError(model::VantroError::Kind::assetWriterFailed, error.what());
    }
    std::error_code ignored;
    std::filesystem::remove(capture::cursorJournalPath(recordingURL), ignored);
    finished.editableClickEvents = finished.metadata.clickEvents;
    model::normalizeClickEvents(finished.editableClickEvents, finished.metadata.endTime);
    return finished;
}

model::ProjectData freshProject(const FinishedRecording& finished, std::string name) {
    model::ProjectData project;
    project.recordingName = std::move(name);
    project.metadata = finished.metadata;
    project.editableClickEvents = finished.editableClickEvents;
    project.segments = finished.segments;
    return project;
}

} // namespace vantro::app::files
