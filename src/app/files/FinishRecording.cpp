#include "app/files/FinishRecording.h"

#include "app/files/ProjectPackage.h"
#include "base/OutputFile.h"
#include "capture/session/CursorJournal.h"
#include "model/Json.h"
#include "model/VantroError.h"

#include <system_error>

namespace vantro::app::files {

model::Recording finishRecording(const std::filesystem::path& movie,
                                 model::RecordingMetadata metadata) {
    try {
        base::writeWholeFile(movie.parent_path() / package::metadataFile,
                             model::encodeMetadata(metadata));
    } catch (const std::runtime_error& error) { // the file, or a number that JSON cannot hold
        throw model::VantroError(model::VantroError::Kind::assetWriterFailed, error.what());
    }
    std::error_code ignored;
    std::filesystem::remove(capture::cursorJournalPath(movie), ignored);
    return {movie, std::move(metadata)};
}

} // namespace vantro::app::files
