#include "app/FinishedRecording.h"

#include "app/ProjectPackage.h"
#include "base/OutputFile.h"
#include "model/Json.h"
#include "model/VantroError.h"

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
    finished.editableClickEvents = finished.metadata.clickEvents;
    normalizeClickEvents(finished.editableClickEvents, finished.metadata.endTime);
    return finished;
}

} // namespace vantro
