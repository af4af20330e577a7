#include "app/files/ImportMovie.h"

#include "app/files/FileLinking.h"
#include "app/files/FinishRecording.h"
#include "app/files/ProjectPackage.h"
#include "app/files/RecordingFolder.h"
#include "app/files/UnsavedRecordings.h"
#include "media/Asset.h"
#include "media/values/MediaError.h"
#include "model/Validation.h"
#include "model/VantroError.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <string_view>
#include <system_error>

#include <fmt/format.h>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 5> movieExtensions{".mp4", ".mov", ".mkv", ".webm", ".m4v"};
constexpr double usualFrameRate = 60;
constexpr double highestFrameRate = 240;

[[noreturn]] void failOpen(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::projectOpenFailed, message);
}

model::RecordingMetadata metadataOf(const fs::path& movie) {
    const auto asset = media::Asset::open(movie);
    const auto pictures = asset.tracks(media::MediaType::video);
    if (pictures.empty())
        failOpen(fmt::format("{}: it holds no pictures", movie.string()));
    const auto& track = pictures.front();
    model::RecordingMetadata metadata;
    metadata.endTime = asset.duration().seconds();
    metadata.captureRect = {0, 0, track.naturalSize.width, track.naturalSize.height};
    const double rate = track.nominalFrameRate > 0 ? track.nominalFrameRate : usualFrameRate;
    metadata.frameRate = std::lround(std::clamp(rate, 1.0, highestFrameRate));
    metadata.hasSystemAudio = !asset.tracks(media::MediaType::audio).empty();
    model::validate(metadata);
    return metadata;
}

/// A recording's folder that goes again unless all that belongs into it is there.
struct FreshFolder {
    fs::path path = makeRecordingDirectory();
    bool isWhole = false;

    FreshFolder() = default;
    FreshFolder(const FreshFolder&) = delete;
    FreshFolder& operator=(const FreshFolder&) = delete;
    ~FreshFolder() {
        std::error_code ignored;
        if (!isWhole)
            fs::remove_all(path, ignored);
    }
};

} // namespace

bool hasMovieName(const fs::path& path) {
    auto extension = path.extension().string();
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return std::ranges::count(movieExtensions, extension) > 0;
}

model::Project importMovie(const fs::path& movie) try {
    if (!fs::is_regular_file(movie))
        failOpen(fmt::format("{}: no such file", movie.string()));
    auto metadata = metadataOf(movie);
    FreshFolder folder;
    const auto place = folder.path / package::recordingFile;
    linkOrCopy(movie, place);
    auto recording = finishRecording(place, std::move(metadata));
    auto name = movie.stem().string();
    nameRecording(place, name);
    folder.isWhole = true;
    auto edit = model::freshEdit(recording.metadata());
    return {.name = std::move(name), .recording = std::move(recording), .edit = std::move(edit)};
} catch (const model::VantroError& error) {
    failOpen(error.message());
} catch (const std::runtime_error& error) {
    failOpen(error.what());
}

} // namespace vantro::app::files
