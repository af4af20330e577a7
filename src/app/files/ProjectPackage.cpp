#include "app/files/ProjectPackage.h"

#include "app/files/FileLinking.h"
#include "base/OutputFile.h"
#include "model/Json.h"
#include "model/VantroError.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void failSave(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::projectSaveFailed, message);
}

[[noreturn]] void failOpen(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::projectOpenFailed, message);
}

const model::BackgroundImageSource* customBackground(const model::BackgroundSettings& settings) {
    const auto* image = std::get_if<model::BackgroundImageSource>(&settings.type);
    return image != nullptr && !image->isBuiltIn ? image : nullptr;
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

bool isPackage(const fs::path& folder) {
    std::error_code error;
    return fs::is_directory(folder, error) && fs::exists(folder / package::projectFile, error);
}

/// Puts the whole folder `fresh` in the place of `packagePath`, in one step where the file system
/// can swap two names.
void moveIntoPlace(const fs::path& fresh, const fs::path& packagePath, bool replace) {
    const auto flags = replace && fs::exists(packagePath) ? RENAME_EXCHANGE : RENAME_NOREPLACE;
    if (::renameat2(AT_FDCWD, fresh.c_str(), AT_FDCWD, packagePath.c_str(), flags) == 0) {
        if (flags == RENAME_EXCHANGE)
            fs::remove_all(fresh); // now the earlier package
        return;
    }
    if (errno != EINVAL && errno != ENOSYS)
        throw fs::filesystem_error("cannot save", packagePath,
                                   std::error_code(errno, std::generic_category()));
    if (flags == RENAME_EXCHANGE)
        fs::remove_all(packagePath);
    fs::rename(fresh, packagePath);
}

/// A folder that is removed with what it holds unless it has been moved away.
struct TemporaryFolder {
    fs::path path;
    explicit TemporaryFolder(fs::path folder) : path(std::move(folder)) {
        fs::create_directories(path);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
};

} // namespace

model::Project readProjectFile(const fs::path& packagePath) {
    requirePackageFolder(packagePath);
    const auto path = packagePath / package::projectFile;
    try {
        return model::decodeProject(readWholeFile(path), packagePath / package::recordingFile);
    } catch (const model::DecodingError& error) {
        failOpen(fmt::format("{}: {}", path.string(), error.what()));
    }
}

model::Project saveProject(const fs::path& packagePath, model::Project project) try {
    const auto& recording = project.recording;
    fs::create_directories(packagePath);
    linkOrCopy(recording.movie(), packagePath / package::recordingFile);
    if (recording.metadata().hasWebcam)
        linkOrCopy(recording.webcamMovie(), packagePath / package::webcamFile);
    if (const auto* image = customBackground(project.edit.background)) {
        const auto target = packagePath / image->url.filename();
        std::error_code ignored;
        if (!fs::equivalent(image->url, target, ignored)) {
            base::OutputFile copy(target);
            fs::copy_file(image->url, copy.temporaryPath(), fs::copy_options::overwrite_existing);
            copy.commit();
        }
    }
    base::writeWholeFile(packagePath / package::projectFile, model::encodeProject(project));
    project.recording = recording.movedTo(packagePath / package::recordingFile);
    return project;
} catch (const fs::filesystem_error& error) {
    failSave(error.what());
} catch (const model::EncodingError& error) {
    failSave(error.what());
}

std::string newPackageProblem(const fs::path& packagePath, bool replace) {
    std::error_code error;
    const auto parent = fs::absolute(packagePath).parent_path();
    if (packagePath.extension() != package::extension)
        return fmt::format("{}: a project's name ends in {}", packagePath.string(),
                           package::extension);
    if (!fs::is_directory(parent, error))
        return fmt::format("{}: no such folder", parent.string());
    if (::faccessat(AT_FDCWD, parent.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return fmt::format("{}: {}", parent.string(), std::generic_category().message(errno));
    if (!fs::exists(fs::symlink_status(packagePath, error)))
        return {};
    if (!replace)
        return fmt::format("{} exists; use --force to replace it", packagePath.string());
    if (!isPackage(packagePath))
        return fmt::format("{} exists and is not a project; it is left as it is",
                           packagePath.string());
    return {};
}

void saveNewProject(const fs::path& packagePath, const model::Project& project, bool replace) try {
    if (const auto problem = newPackageProblem(packagePath, replace); !problem.empty())
        failSave(problem);
    const auto target = fs::absolute(packagePath);
    const TemporaryFolder fresh(target.parent_path() / ("." + target.filename().string() + "." +
                                                        model::Uuid::random().toString()));
    saveProject(fresh.path, project);
    moveIntoPlace(fresh.path, target, replace);
} catch (const fs::filesystem_error& error) {
    failSave(error.what());
}

} // namespace vantro::app::files
