#include "app/files/UnsavedRecordings.h"

#include "app/files/ProjectLock.h"
#include "app/files/ProjectPackage.h"
#include "app/files/RecordingFolder.h"
#include "app/files/RecordingRecovery.h"
#include "app/files/SavedNote.h"
#include "base/Log.h"
#include "base/OutputFile.h"
#include "media/MovieRecovery.h"
#include "render/MovieSession.h"
#include "render/RendererFactory.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <system_error>

#include <sys/stat.h>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

constexpr auto nameFile = "name";            // beside the movie
constexpr model::Size pictureSize{192, 108}; // pixels, twice what a list shows

/// The recording's picture a second after its start, with nothing around it, to fit into
/// `pictureSize`.
std::shared_ptr<const media::PixelBuffer> pictureOf(const fs::path& movie) {
    model::Edit edit;
    edit.background = {.type = model::BackgroundColor{}, .padding = 0, .cornerRadius = 0};
    edit.cursorScale = 0;
    render::MovieSession session({movie, model::RecordingMetadata{}}, std::move(edit),
                                 render::makeRenderer(render::RendererChoice::software));
    const auto size = session.videoSize();
    const double scale = std::min(pictureSize.width / size.width, pictureSize.height / size.height);
    const auto side = [scale](double pixels) {
        return std::max(2, static_cast<int>(std::lround(pixels * scale)));
    };
    return session.still(std::min(1.0, session.duration().seconds() / 2),
                         {side(size.width), side(size.height)});
}

} // namespace

std::vector<UnsavedRecording> unsavedRecordings() {
    std::vector<UnsavedRecording> found;
    std::error_code none; // what cannot be read is not ours
    for (const auto& folder : recordingFolders()) {
        const auto movie = folder / package::recordingFile;
        const bool isOpenElsewhere = !ProjectLock::take(folder);
        if (!fs::is_regular_file(movie, none) || isSaved(movie) || isOpenElsewhere)
            continue;
        const auto condition = recordingCondition(movie);
        if (condition == media::MovieCondition::beingWritten)
            continue;
        found.push_back({.movie = movie,
                         .name = recordingName(movie),
                         .made = fs::last_write_time(movie, none),
                         .bytes = recordingSize(movie),
                         .isInterrupted = condition == media::MovieCondition::interrupted});
    }
    std::ranges::sort(found, std::ranges::greater(), &UnsavedRecording::made);
    return found;
}

RecordingDetails recordingDetails(const fs::path& movie) try {
    if (recordingCondition(movie) != media::MovieCondition::whole)
        return {};
    RecordingDetails details{.seconds = media::Asset::open(movie).duration().seconds(),
                             .picture = {}};
    try {
        details.picture = pictureOf(movie);
    } catch (const std::exception& error) {
        base::logInfo("No picture of {}: {}", movie.string(), error.what());
    }
    return details;
} catch (const std::exception& error) {
    base::logInfo("{}: {}", movie.string(), error.what());
    return {};
}

std::string recordingName(const fs::path& movie) {
    std::ifstream file(movie.parent_path() / nameFile, std::ios::binary);
    if (std::string name{std::istreambuf_iterator<char>(file), {}}; !name.empty())
        return name;
    struct stat status{};
    ::stat(movie.c_str(), &status);
    return defaultRecordingName(status.st_mtime);
}

void nameRecording(const fs::path& movie, const std::string& name) {
    base::writeWholeFile(movie.parent_path() / nameFile, name);
}

} // namespace vantro::app::files
