#include "app/files/RecordingFolder.h"

#include "app/files/ProjectLock.h"
#include "base/UserFolders.h"
#include "model/Uuid.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <optional>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

constexpr mode_t onlyUser = 0700;

/// Where recordings may be made: `levels` lie below `base` and belong to this user alone.
struct Place {
    fs::path base;
    fs::path levels;
    fs::path path() const { return base / levels; }
};

/// The first that is usable counts.
std::vector<Place> places() {
    const auto ofUser = fmt::format("-{}", ::geteuid());
    if (const auto temporary = base::folderFrom("TMPDIR"))
        return {{*temporary, "Vantro"}, {*temporary, "Vantro" + ofUser}};
    std::vector<Place> found;
    if (const auto data = base::userFolder("XDG_DATA_HOME", ".local/share"))
        found.push_back({*data, "vantro/Recordings"});
    found.push_back({"/var/tmp", fs::path("vantro" + ofUser) / "Recordings"});
    return found;
}

bool isThere(const fs::path& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

bool isOwn(const fs::path& folder) {
    struct stat status{};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid();
}

/// Whether each level that exists is this user's, and the first that does not can be made.
bool isUsable(const Place& place) {
    auto folder = place.base;
    for (const auto& level : place.levels) {
        if (!isThere(folder / level))
            break;
        folder /= level;
        if (!isOwn(folder))
            return false;
    }
    while (!isThere(folder) && folder.has_relative_path())
        folder = folder.parent_path();
    return ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

Place usablePlace() {
    const auto all = places();
    for (const auto& place : all)
        if (isUsable(place))
            return place;
    return all.back();
}

bool makePrivate(const fs::path& folder) {
    if (::mkdir(folder.c_str(), onlyUser) == 0)
        return true;
    return errno == EEXIST && isOwn(folder) && ::chmod(folder.c_str(), onlyUser) == 0;
}

/// The folder that is meant by an entry of a place; empty for one that is not there.
fs::path behind(const fs::directory_entry& entry) {
    std::error_code error;
    if (!entry.is_symlink(error))
        return entry.path();
    auto folder = fs::read_symlink(entry.path(), error);
    return !error && isOwn(folder) ? folder : fs::path();
}

/// The entries of all places.
std::vector<fs::directory_entry> allEntries() {
    std::vector<fs::directory_entry> found;
    for (const auto& place : places()) {
        std::error_code ignored; // what cannot be read holds nothing for us
        if (isOwn(place.path()))
            for (const auto& entry : fs::directory_iterator(place.path(), ignored))
                found.push_back(entry);
    }
    return found;
}

} // namespace

std::string defaultRecordingName(std::time_t when) {
    std::tm local{};
    ::localtime_r(&when, &local);
    return fmt::format("vantro_{:%Y-%m-%d_%H-%M-%S}", local);
}

fs::path recordingsDirectory() {
    return usablePlace().path();
}

std::vector<fs::path> recordingFolders() {
    std::vector<fs::path> found;
    for (const auto& entry : allEntries())
        if (auto folder = behind(entry); !folder.empty())
            found.push_back(std::move(folder));
    return found;
}

std::string recordingsFolderProblem(const fs::path& chosen) {
    std::error_code error;
    if (!fs::is_directory(chosen, error) && !error)
        error = std::make_error_code(std::errc::not_a_directory);
    if (!error && ::faccessat(AT_FDCWD, chosen.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        error = std::error_code(errno, std::generic_category());
    return error ? fmt::format("{}: {}", chosen.string(), error.message()) : std::string();
}

fs::path makeRecordingDirectory(const std::optional<fs::path>& chosen) {
    const auto place = usablePlace();
    std::error_code ignored;
    fs::create_directories(place.base, ignored);
    auto folder = place.base;
    bool isMade = true;
    for (const auto& level : place.levels)
        isMade = isMade && makePrivate(folder /= level);
    const auto name = model::Uuid::random().toString();
    folder /= name;
    if (!chosen) {
        if (isMade)
            makePrivate(folder);
        return folder;
    }
    const auto elsewhere = fs::absolute(*chosen) / name;
    if (makePrivate(elsewhere) && isMade)
        fs::create_directory_symlink(elsewhere, folder, ignored); // else it is not listed
    return elsewhere;
}

std::uintmax_t recordingSize(const fs::path& movie) {
    std::uintmax_t bytes = 0;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(movie.parent_path(), ignored))
        if (entry.is_regular_file(ignored))
            bytes += entry.file_size(ignored);
    return bytes;
}

void deleteRecording(const fs::path& movie) {
    const auto folder = movie.parent_path();
    const auto all = recordingFolders();
    if (std::ranges::find(all, folder) == all.end())
        return;
    const auto entries = allEntries(); // a link leads nowhere afterwards
    if (const auto lock = ProjectLock::take(folder); lock)
        fs::remove_all(folder);
    else if (isThere(folder))
        throw std::runtime_error(fmt::format("{}: {}", folder.string(), lock.error()));
    std::error_code ignored;
    for (const auto& entry : entries)
        if (entry.is_symlink(ignored) && fs::read_symlink(entry.path(), ignored) == folder)
            fs::remove(entry.path(), ignored);
}

} // namespace vantro::app::files
