#include "app/files/SavingPlace.h"

#include "app/files/ProjectPackage.h"
#include "model/VantroError.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

namespace vantro::app::files {

namespace fs = std::filesystem;

void failOpen(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::projectOpenFailed, message);
}

void failSave(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::projectSaveFailed, message);
}

model::BackgroundImageSource* customPicture(model::Edit& edit) {
    auto* image = std::get_if<model::BackgroundImageSource>(&edit.background.type);
    return image != nullptr && !image->isBuiltIn ? image : nullptr;
}

std::shared_ptr<const ProjectLock> lockOf(const fs::path& target,
                                          const std::shared_ptr<const ProjectLock>& held) {
    if (held && held->isOf(target))
        return held;
    auto lock = ProjectLock::take(target);
    if (!lock)
        failSave(fmt::format("{}: {}", target.string(), lock.error()));
    return std::move(*lock);
}

std::string placeProblem(const fs::path& target, bool replace) {
    std::error_code error;
    const auto parent = fs::absolute(target).parent_path();
    if (target.extension() != package::extension)
        return fmt::format("{}: a project's name ends in {}", target.string(), package::extension);
    if (!fs::is_directory(parent, error))
        return fmt::format("{}: no such folder", parent.string());
    if (::faccessat(AT_FDCWD, parent.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return fmt::format("{}: {}", parent.string(), std::generic_category().message(errno));
    if (!replace && fs::exists(fs::symlink_status(target, error)))
        return fmt::format("{} exists; use --force to replace it", target.string());
    return {};
}

} // namespace vantro::app::files
