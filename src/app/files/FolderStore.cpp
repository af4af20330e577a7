#include "app/files/FolderStore.h"

#include "app/files/OwnMovie.h"
#include "app/files/ProjectPackage.h"
#include "app/files/SavingPlace.h"
#include "model/Json.h"
#include "model/VantroError.h"

#include <cerrno>
#include <fstream>
#include <sstream>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

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
