#include "app/files/FileLinking.h"
#include "app/files/FolderStore.h"
#include "app/files/ProjectPackage.h"
#include "app/files/SavedNote.h"
#include "app/files/SavingPlace.h"
#include "archive/ArchiveError.h"
#include "archive/ArchivePath.h"
#include "archive/ArchiveWriter.h"
#include "base/OutputFile.h"
#include "model/Json.h"
#include "model/Uuid.h"
#include "model/VantroError.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <set>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

bool isPackage(const fs::path& folder) {
    std::error_code error;
    return fs::is_directory(folder, error) && fs::exists(folder / package::projectFile, error);
}

bool haveEqualContent(const fs::path& a, const fs::path& b) {
    std::error_code error;
    if (fs::equivalent(a, b, error))
        return true;
    const auto first = archive::find(a);
    const auto second = archive::find(b);
    return first && second && first->size == second->size &&
           archive::readAll(*first, largestPicture) == archive::readAll(*second, largestPicture);
}

/// The place of a picture in a package: its own name, unless that already stands for something
/// else there, which an edit on disk may still refer to.
fs::path placeOfPicture(const fs::path& picture, const fs::path& folder) {
    static const std::set<std::string> taken{package::projectFile, package::recordingFile,
                                             package::webcamFile, package::metadataFile};
    auto name = picture.filename().string();
    for (int number = 2;; ++number) {
        const auto place = folder / name;
        if (!taken.contains(name) && (!fs::exists(place) || haveEqualContent(picture, place)))
            return place;
        name =
            fmt::format("{}-{}{}", picture.stem().string(), number, picture.extension().string());
    }
}

/// Writes the edit into a package that holds the movies: first its picture, then "project.json" in
/// one step.
void writeEdit(const fs::path& folder, model::Project project) {
    if (auto* image = customPicture(project.edit)) {
        const auto place = placeOfPicture(image->path, folder);
        if (!fs::exists(place)) {
            base::OutputFile copy(place);
            archive::copyOut(archive::locate(image->path), copy.temporaryPath());
            copy.commit();
        }
        image->path = place;
    }
    base::writeWholeFile(folder / package::projectFile, model::encodeProject(project));
}

/// Whether the package's movies are the recording's own.
bool holdsMovies(const fs::path& packagePath, const model::Recording& recording) {
    std::error_code error;
    const auto isSame = [&](const fs::path& a, const fs::path& b) {
        return fs::equivalent(a, b, error);
    };
    return isPackage(packagePath) &&
           (isSame(packagePath, recording.movie().parent_path()) ||
            (isSame(packagePath / package::recordingFile, recording.movie()) &&
             (!recording.metadata().hasWebcam ||
              isSame(packagePath / package::webcamFile, recording.webcamMovie()))));
}

/// The names of what a package holds of its project.
std::set<std::string> ownNames(const fs::path& packagePath) {
    std::set<std::string> names{package::projectFile, package::recordingFile, package::webcamFile};
    try {
        auto project = FolderStore().read(packagePath);
        if (const auto* image = customPicture(project.edit))
            names.insert(image->path.filename());
    } catch (const model::VantroError&) {
        return names; // what cannot be read refers to no picture
    }
    return names;
}

/// Brings what is not the project's from one package into the next.
void keepOtherFiles(const fs::path& from, const fs::path& to) {
    constexpr auto copying = fs::copy_options::recursive | fs::copy_options::copy_symlinks;
    const auto own = ownNames(from);
    for (const auto& entry : fs::directory_iterator(from)) {
        const auto name = entry.path().filename();
        if (own.contains(name))
            continue;
        std::error_code unlinkable;
        fs::copy(entry.path(), to / name, copying | fs::copy_options::create_hard_links,
                 unlinkable);
        if (unlinkable)
            fs::copy(entry.path(), to / name, copying | fs::copy_options::overwrite_existing);
    }
}

/// A folder that is removed with what it holds, unless it has been moved away.
class TemporaryFolder {
  public:
    explicit TemporaryFolder(const fs::path& target)
        : m_path(target.parent_path() / fmt::format(".{}.{}", target.filename().string(),
                                                    model::Uuid::random().toString())) {
        fs::create_directory(m_path);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    const fs::path& path() const { return m_path; }

  private:
    fs::path m_path;
};

/// Puts the whole folder `fresh` in the place of `target`, whose earlier content it then holds.
void moveIntoPlace(const fs::path& fresh, const fs::path& target) {
    const bool replace = fs::exists(target);
    const auto move = [](const fs::path& from, const fs::path& to, unsigned flags) {
        return ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), flags) == 0;
    };
    if (move(fresh, target, replace ? RENAME_EXCHANGE : RENAME_NOREPLACE))
        return;
    if (errno == EINVAL || errno == ENOSYS) { // network file systems cannot exchange two names
        const fs::path aside = fresh.string() + ".earlier";
        if (replace)
            fs::rename(target, aside);
        std::error_code error;
        fs::rename(fresh, target, error);
        if (replace)
            fs::rename(aside, error ? target : fresh);
        if (!error)
            return;
        errno = error.value();
    }
    throw fs::filesystem_error("cannot save", target,
                               std::error_code(errno, std::generic_category()));
}

/// Makes the package anew and returns its lock, which nobody else can get in between.
std::shared_ptr<const ProjectLock> writePackage(const fs::path& target,
                                                const model::Project& project) {
    const auto& recording = project.recording;
    const TemporaryFolder fresh(target);
    auto lock = ProjectLock::take(fresh.path());
    if (!lock)
        failSave(fmt::format("{}: {}", fresh.path().string(), lock.error()));
    if (fs::exists(target))
        keepOtherFiles(target, fresh.path());
    linkOrCopy(recording.movie(), fresh.path() / package::recordingFile);
    if (recording.metadata().hasWebcam)
        linkOrCopy(recording.webcamMovie(), fresh.path() / package::webcamFile);
    writeEdit(fresh.path(), project);
    base::syncToDisk(fresh.path());
    moveIntoPlace(fresh.path(), target);
    return std::move(*lock);
}

} // namespace

SavedProject FolderStore::save(const fs::path& path, const model::Project& project, bool replace,
                               const std::shared_ptr<const ProjectLock>& held) const try {
    if (const auto found = problem(path, replace); !found.empty())
        failSave(found);
    const auto target = fs::weakly_canonical(path);
    auto lock = fs::exists(target) ? lockOf(target, held) : nullptr;
    if (holdsMovies(target, project.recording))
        writeEdit(target, project);
    else
        lock = writePackage(target, project);
    noteSaved(project.recording.movie(), movie(target));
    return {.project = {.name = project.name,
                        .recording = project.recording.movedTo(movie(path)),
                        .edit = project.edit},
            .lock = std::move(lock)};
} catch (const fs::filesystem_error& error) {
    // Its own text tells of temporary names, which nobody has chosen.
    if (error.path2().empty() || error.code() == std::errc::no_such_file_or_directory)
        failSave(fmt::format("{}: {}", error.path1().string(), error.code().message()));
    failSave(error.what());
} catch (const archive::ArchiveError& error) {
    failSave(error.what());
} catch (const model::EncodingError& error) {
    failSave(error.what());
}

std::string FolderStore::problem(const fs::path& packagePath, bool replace) const {
    if (auto found = placeProblem(packagePath, replace); !found.empty())
        return found;
    std::error_code error;
    if (fs::exists(fs::symlink_status(packagePath, error)) && !isPackage(packagePath))
        return fmt::format("{} exists and is not a project; it is left as it is",
                           packagePath.string());
    return {};
}

} // namespace vantro::app::files
