#include "app/files/FolderStore.h"

#include "app/files/ProjectPackage.h"
#include "media/Asset.h"
#include "media/values/MediaError.h"
#include "model/Json.h"
#include "model/VantroError.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <fstream>
#include <sstream>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void failOpen(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::projectOpenFailed, message);
}

std::string readWholeFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        failOpen(fmt::format("{}: {}", path.string(), std::generic_category().message(errno)));
    std::ostringstream content;
    content << file.rdbuf();
    if (file.bad())
        failOpen(fmt::format("{}: cannot be read", path.string()));
    return std::move(content).str();
}

void requirePackageFolder(const fs::path& packagePath) {
    std::error_code error;
    const auto status = fs::status(packagePath, error);
    if (!fs::exists(status))
        failOpen(fmt::format("{}: no such project", packagePath.string()));
    if (!fs::is_directory(status))
        failOpen(fmt::format("{}: not a project folder", packagePath.string()));
}

void requireReadable(const fs::path& movie) {
    std::error_code error;
    if (!fs::is_regular_file(movie, error))
        failOpen(fmt::format("{}: no such file", movie.string()));
    if (::faccessat(AT_FDCWD, movie.c_str(), R_OK, AT_EACCESS) != 0)
        failOpen(fmt::format("{}: {}", movie.string(), std::generic_category().message(errno)));
}

/// Plainly longer or shorter: a recording's movie lasts as long as its metadata says, one from
/// elsewhere in its place nearly so.
bool disagree(double movie, double told) {
    constexpr double mostSeconds = 2;
    constexpr double mostOfLonger = 0.1;
    const double difference = std::abs(movie - told);
    return difference > mostSeconds && difference > mostOfLonger * std::max(movie, told);
}

/// Samples and clicks of another recording would be shown at places that mean nothing. A movie
/// that cannot be opened says so to whoever needs its pictures.
void requireOwnMovie(const model::Recording& recording) {
    const double told = recording.metadata().endTime;
    double movie = 0;
    try {
        movie = media::Asset::open(recording.movie()).duration().seconds();
    } catch (const media::MediaError&) {
        return;
    }
    if (told > 0 && disagree(movie, told))
        failOpen(fmt::format("{}: it lasts {:.1f} s, but the recording that {} tells of lasted "
                             "{:.1f} s; they do not belong together",
                             recording.movie().string(), movie, package::projectFile, told));
}

} // namespace

model::Project FolderStore::read(const fs::path& project) const {
    requirePackageFolder(project);
    const auto path = project / package::projectFile;
    try {
        auto found = model::decodeProject(readWholeFile(path), movie(project));
        requireReadable(found.recording.movie());
        requireOwnMovie(found.recording);
        return found;
    } catch (const model::DecodingError& error) {
        failOpen(fmt::format("{}: {}", path.string(), error.what()));
    }
}

ProjectAccess FolderStore::access(const fs::path& project) const {
    const auto lock = ProjectLock::take(project);
    if (!lock)
        return {.lock = {}, .whyReadOnly = lock.error()};
    if (::faccessat(AT_FDCWD, project.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return {.lock = {}, .whyReadOnly = std::generic_category().message(errno)};
    return {.lock = *lock, .whyReadOnly = {}};
}

fs::path FolderStore::movie(const fs::path& project) const {
    return project / package::recordingFile;
}

} // namespace vantro::app::files
