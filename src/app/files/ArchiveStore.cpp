#include "app/files/ArchiveStore.h"

#include "app/files/OwnMovie.h"
#include "app/files/ProjectPackage.h"
#include "app/files/SavedNote.h"
#include "app/files/SavingPlace.h"
#include "archive/ArchiveError.h"
#include "archive/ArchiveFile.h"
#include "archive/ArchivePath.h"
#include "archive/ArchiveWriter.h"
#include "archive/StoredArchive.h"
#include "base/OutputFile.h"
#include "model/Json.h"
#include "model/VantroError.h"

#include <algorithm>
#include <cerrno>
#include <set>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

constexpr auto typeFile = "mimetype";
constexpr std::string_view type = "application/x-vantro-project";
constexpr std::uint64_t largestEdit = std::uint64_t{1} << 30;
constexpr std::uint64_t tolerableWaste = std::uint64_t{64} << 20; // bytes of earlier edits

bool isArchive(const fs::path& file) {
    try {
        return archive::StoredArchive::open(file).find(package::projectFile) != nullptr;
    } catch (const archive::ArchiveError&) {
        return false;
    }
}

/// The picture's entry in the archive, which is added unless its bytes are there already.
std::string addPicture(archive::ArchiveWriter& writer, const fs::path& picture,
                       const std::vector<archive::Entry>& there) {
    const auto bytes = archive::readAll(archive::locate(picture), largestPicture);
    const std::string_view content(bytes.data(), bytes.size());
    const auto sum = archive::checksum(content);
    for (const auto& entry : there)
        if (entry.size == content.size() && entry.checksum == sum)
            return entry.name;
    const std::set<std::string> own{typeFile, package::projectFile, package::recordingFile,
                                    package::webcamFile, package::metadataFile};
    auto name = picture.filename().string();
    for (int number = 2;
         own.contains(name) || std::ranges::count(there, name, &archive::Entry::name); ++number)
        name =
            fmt::format("{}-{}{}", picture.stem().string(), number, picture.extension().string());
    writer.add(name, content);
    return name;
}

/// Adds the edit, and its picture.
void addEdit(archive::ArchiveWriter& writer, const fs::path& target,
             const std::vector<archive::Entry>& there, model::Project project) {
    if (auto* image = customPicture(project.edit))
        image->path = target / addPicture(writer, image->path, there);
    writer.add(package::projectFile, model::encodeProject(project));
}

void append(const fs::path& target, const archive::StoredArchive& archive,
            const model::Project& project) {
    archive::ArchiveWriter writer(target, archive.entries(), archive.end());
    addEdit(writer, target, archive.entries(), project);
    writer.finish();
}

/// Returns the lock of the new file, which nobody else can get in between.
std::shared_ptr<const ProjectLock> writeAnew(const fs::path& target,
                                             const model::Project& project) {
    const auto& recording = project.recording;
    base::OutputFile fresh(target);
    auto lock = ProjectLock::take(fresh.temporaryPath());
    if (!lock)
        failSave(fmt::format("{}: {}", target.string(), lock.error()));
    archive::ArchiveWriter writer(fresh.temporaryPath());
    writer.add(typeFile, type);
    writer.add(package::recordingFile, archive::locate(recording.movie()));
    if (recording.metadata().hasWebcam)
        writer.add(package::webcamFile, archive::locate(recording.webcamMovie()));
    addEdit(writer, target, {}, project);
    writer.finish();
    fresh.commit();
    return std::move(*lock);
}

bool isMostlyWaste(const fs::path& file, const archive::StoredArchive& archive) {
    std::uint64_t used = 0;
    for (const auto& entry : archive.entries())
        used += entry.size;
    const auto waste = fs::file_size(file) - std::min<std::uint64_t>(used, fs::file_size(file));
    return waste > std::max(used, tolerableWaste);
}

std::shared_ptr<const ProjectLock> write(const fs::path& target, const model::Project& project,
                                         std::shared_ptr<const ProjectLock> lock) {
    std::error_code error;
    if (!fs::equivalent(project.recording.movie().parent_path(), target, error))
        return writeAnew(target, project);
    const auto archive = archive::StoredArchive::open(target);
    if (isMostlyWaste(target, archive))
        return writeAnew(target, project);
    append(target, archive, project);
    return lock;
}

} // namespace

model::Project ArchiveStore::read(const fs::path& project) const try {
    const auto archive = archive::StoredArchive::open(project);
    for (const auto* needed : {package::projectFile, package::recordingFile})
        if (archive.find(needed) == nullptr)
            throw archive::ArchiveError(
                fmt::format("{}: no project: it holds no {}", project.string(), needed));
    const auto json = archive.read(*archive.find(package::projectFile), largestEdit);
    auto found = model::decodeProject({json.data(), json.size()}, movie(project));
    requireOwnMovie(found.recording);
    return found;
} catch (const archive::ArchiveError& error) {
    failOpen(error.what());
} catch (const model::DecodingError& error) {
    failOpen(fmt::format("{}: {}", (project / package::projectFile).string(), error.what()));
}

ProjectAccess ArchiveStore::access(const fs::path& project) const {
    const auto lock = ProjectLock::take(project);
    if (!lock)
        return {.lock = {}, .whyReadOnly = lock.error()};
    if (::faccessat(AT_FDCWD, project.c_str(), W_OK, AT_EACCESS) != 0)
        return {.lock = {}, .whyReadOnly = std::generic_category().message(errno)};
    return {.lock = *lock, .whyReadOnly = {}};
}

fs::path ArchiveStore::movie(const fs::path& project) const {
    return project / package::recordingFile;
}

SavedProject ArchiveStore::save(const fs::path& path, const model::Project& project, bool replace,
                                const std::shared_ptr<const ProjectLock>& held) const try {
    if (const auto found = problem(path, replace); !found.empty())
        failSave(found);
    const auto target = fs::weakly_canonical(path);
    auto lock = write(target, project, fs::exists(target) ? lockOf(target, held) : nullptr);
    noteSaved(project.recording.movie(), movie(target));
    return {.project = {.name = project.name,
                        .recording = project.recording.movedTo(movie(path)),
                        .edit = project.edit},
            .lock = std::move(lock)};
} catch (const archive::ArchiveError& error) {
    failSave(error.what());
} catch (const fs::filesystem_error& error) {
    failSave(fmt::format("{}: {}", error.path1().string(), error.code().message()));
} catch (const model::EncodingError& error) {
    failSave(error.what());
}

std::string ArchiveStore::problem(const fs::path& target, bool replace) const {
    if (auto found = placeProblem(target, replace); !found.empty())
        return found;
    std::error_code error;
    if (fs::exists(fs::symlink_status(target, error)) && !isArchive(target))
        return fmt::format("{} exists and is not a project in one file; it is left as it is",
                           target.string());
    return {};
}

} // namespace vantro::app::files
