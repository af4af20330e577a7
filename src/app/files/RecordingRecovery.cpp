#include "app/files/RecordingRecovery.h"

#include "app/files/FinishRecording.h"
#include "app/files/ProjectPackage.h"
#include "app/files/RecordingFolder.h"
#include "base/Log.h"
#include "capture/session/CursorJournal.h"
#include "media/Asset.h"
#include "media/MovieRecovery.h"
#include "media/values/MediaError.h"
#include "model/Json.h"
#include "model/Validation.h"
#include "model/VantroError.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <optional>
#include <sstream>
#include <system_error>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

std::optional<model::RecordingMetadata> writtenMetadata(const fs::path& path) try {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream json;
    json << file.rdbuf();
    return file ? std::optional(model::decodeMetadata(json.view())) : std::nullopt;
} catch (const model::DecodingError& error) {
    base::logWarning("{}: {}", path.string(), error.what()); // it was being written when all ended
    return {};
}

std::optional<model::RecordingMetadata> journalledMetadata(const fs::path& movie) try {
    auto metadata = capture::readCursorJournal(movie);
    model::validate(metadata);
    return metadata;
} catch (const std::runtime_error& error) {
    base::logWarning("The pointer's path is lost: {}", error.what());
    return {};
}

/// A recording of which there is nothing but the movie.
model::RecordingMetadata metadataOf(const media::Asset& asset) {
    model::RecordingMetadata metadata;
    if (const auto tracks = asset.tracks(media::MediaType::video); !tracks.empty())
        metadata.captureRect = {0, 0, tracks.front().naturalSize.width,
                                tracks.front().naturalSize.height};
    metadata.endTime = asset.duration().seconds();
    return metadata;
}

media::MediaTime mediaTime(double seconds) {
    constexpr std::int32_t microseconds = 1'000'000;
    return {static_cast<std::int64_t>(seconds * microseconds), microseconds};
}

fs::path webcamBeside(const fs::path& movie) {
    return movie.parent_path() / package::webcamFile;
}

/// Whether there is a camera's movie that can be shown. One that cannot be made whole does not keep
/// the rest from being recovered.
bool recoverWebcam(const fs::path& webcam, std::optional<media::MediaTime> end) try {
    if (!fs::is_regular_file(webcam))
        return false;
    if (media::movieCondition(webcam) != media::MovieCondition::whole)
        media::recoverMovie(webcam, end);
    return !media::Asset::open(webcam).tracks(media::MediaType::video).empty();
} catch (const media::MediaError& error) {
    base::logWarning("The webcam is lost: {}", error.what());
    return false;
}

} // namespace

model::Recording recoverRecording(const fs::path& movie) try {
    if (!fs::is_regular_file(movie))
        throw model::VantroError(model::VantroError::Kind::noRecordingData);
    auto metadata = writtenMetadata(movie.parent_path() / package::metadataFile);
    if (!metadata)
        metadata = journalledMetadata(movie);
    const auto end = metadata ? std::optional(mediaTime(metadata->endTime)) : std::nullopt;
    if (media::movieCondition(movie) != media::MovieCondition::whole)
        media::recoverMovie(movie, end);
    const auto asset = media::Asset::open(movie);
    if (!metadata)
        metadata = metadataOf(asset);
    metadata->hasWebcam = recoverWebcam(webcamBeside(movie), end);
    return finishRecording(movie, *std::move(metadata));
} catch (const media::MediaError& error) {
    throw model::VantroError(model::VantroError::Kind::assetWriterFailed, error.what());
} catch (const fs::filesystem_error& error) {
    throw model::VantroError(model::VantroError::Kind::assetWriterFailed, error.what());
}

media::MovieCondition recordingCondition(const fs::path& movie) {
    using enum media::MovieCondition;
    const std::array conditions{media::movieCondition(movie),
                                media::movieCondition(webcamBeside(movie))};
    for (const auto worst : {beingWritten, interrupted})
        if (std::ranges::find(conditions, worst) != conditions.end())
            return worst;
    return whole;
}

bool isBeingRecorded(const fs::path& movie) {
    return recordingCondition(movie) == media::MovieCondition::beingWritten;
}

std::vector<fs::path> interruptedRecordings() {
    std::vector<fs::path> movies;
    std::error_code ignored; // what cannot be read is not ours
    for (const auto& folder : recordingFolders()) {
        auto movie = folder / package::recordingFile;
        if (fs::is_regular_file(movie, ignored) &&
            recordingCondition(movie) == media::MovieCondition::interrupted)
            movies.push_back(std::move(movie));
    }
    std::ranges::sort(movies, {}, [](const auto& movie) {
        std::error_code gone;
        return fs::last_write_time(movie, gone);
    });
    return movies;
}

} // namespace vantro::app::files
